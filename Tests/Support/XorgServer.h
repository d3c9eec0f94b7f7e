#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace brivane {

/// A private Xorg server on a display number that was free, with its log in a folder of its own.
/// It ends with this object, and with the test program however that ends. Any user may start one.
class XorgServer {
 public:
  /// Returns when the server accepts connections; throws with the end of its log when it doesn't.
  XorgServer();
  ~XorgServer();
  XorgServer(const XorgServer&) = delete;
  XorgServer& operator=(const XorgServer&) = delete;

  /// The value of DISPLAY, such as ":97".
  const std::string& display() const { return name; }

  /// Ends the server while its clients are connected, and waits until it is gone.
  void kill();

 private:
  void start(int displayNumberDescriptor);
  std::string readDisplayNumber(int descriptor);
  std::string logEnd() const;

  std::filesystem::path folder;
  pid_t process = -1;
  std::string name;
};

}  // namespace brivane
