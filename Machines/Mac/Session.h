#pragma once

#include "BrivaneCore/Seams/Session.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// The user's session. The home folder is the account's, not the environment's.
class MacSession : public Session {
 public:
  /// `services` must outlive this.
  explicit MacSession(AppKitServices& services) : appKit(services) {}

  std::uint32_t userID() override;
  std::string homeFolder() override;
  bool fileExists(const std::string& path) override;
  std::optional<double> modificationSeconds(const std::string& path) override;
  std::optional<std::string> executablePath() override;
  std::vector<std::string> arguments() override;
  void openURL(const std::string& url) override { appKit.openURL(url); }

 private:
  AppKitServices& appKit;
};

}  // namespace brivane
