#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// The user's session, and this process in it. Main thread. Paths are absolute.
class Session {
 public:
  virtual ~Session() = default;

  /// The number of the user that this process runs as.
  virtual std::uint32_t userID() = 0;

  /// The user's home folder, without a slash at its end.
  virtual std::string homeFolder() = 0;

  virtual bool fileExists(const std::string& path) = 0;

  /// When the file was last modified, in seconds since 1970; nothing when unknown.
  virtual std::optional<double> modificationSeconds(const std::string& path) = 0;

  /// The path of the bundle's main executable; nothing when the bundle gives none.
  virtual std::optional<std::string> executablePath() = 0;

  /// This process's arguments, the program's path first.
  virtual std::vector<std::string> arguments() = 0;

  /// Has the system open a URL in its default program; doesn't wait, reports nothing.
  virtual void openURL(const std::string& url) = 0;
};

}  // namespace brivane
