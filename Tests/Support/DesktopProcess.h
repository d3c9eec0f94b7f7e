#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace brivane {

/// A program of the desktop that runs beside the one under test, such as a panel: started by its
/// name in the path, ended with this object, and with the test however that ends. Its output is
/// dropped.
class DesktopProcess {
 public:
  DesktopProcess(const std::vector<std::string>& words,
                 const std::map<std::string, std::string>& environment);
  ~DesktopProcess();
  DesktopProcess(const DesktopProcess&) = delete;
  DesktopProcess& operator=(const DesktopProcess&) = delete;

 private:
  pid_t child = -1;
};

}  // namespace brivane
