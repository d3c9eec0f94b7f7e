#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace brivane {

// The devices of "ddc-bus-host" may come and go while a program runs.

/// Where a path of that world, such as "/dev/i2c-5", really lies.
inline std::filesystem::path reallyAt(const std::string& path) {
  return std::filesystem::path(std::getenv("UMOCKDEV_DIR") + path);
}

/// A device file (or any other path of the world) that is not there for a while.
class Vanished {
 public:
  /// `path` as the program sees it: "/dev/i2c-5".
  explicit Vanished(const std::string& path)
      : place(reallyAt(path)), hidden(reallyAt("/vanished")) {
    std::filesystem::create_directories(hidden);
    std::string name = path;
    std::replace(name.begin(), name.end(), '/', '-');
    hidden /= name;
    std::filesystem::rename(place, hidden);
  }
  ~Vanished() { std::filesystem::rename(hidden, place); }
  Vanished(const Vanished&) = delete;
  Vanished& operator=(const Vanished&) = delete;

 private:
  std::filesystem::path place;
  std::filesystem::path hidden;
};

/// Lets udev announce the device with that link below "/sys/class": "i2c-dev/i2c-5".
inline void announceDevice(const std::string& action, const std::string& device) {
  const auto link = std::filesystem::path("/sys/class") / device;
  const auto path = link.parent_path() / std::filesystem::read_symlink(link);
  std::ofstream(std::filesystem::path(std::getenv("BRIVANE_DDC_BUS")) / "uevents")
      << action << " " << path.lexically_normal().string() << "\n";
}

}  // namespace brivane
