#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Seams/Session.h"
#include "Machines/Linux/AutostartEntry.h"

namespace brivane {

/// The user's session. The Mac's launch-agent file counts as existing when the program's autostart
/// entry is installed.
class LinuxSession : public Session {
 public:
  /// `programsEntry` must outlive this.
  explicit LinuxSession(const AutostartEntry& programsEntry) : entry(programsEntry) {}

  std::uint32_t userID() override;
  std::string homeFolder() override;
  bool fileExists(const std::string& path) override;
  std::optional<double> modificationSeconds(const std::string& path) override;
  std::optional<std::string> executablePath() override;
  std::vector<std::string> arguments() override;
  void openURL(const std::string& url) override;

 private:
  const AutostartEntry& entry;
};

}  // namespace brivane
