// Loading Qt takes longer than most command-line modes, so the program isn't linked with Qt.
#include "Machines/OpenQtFrame.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "Machines/Qt/Toolkit/FrameRequest.h"

namespace brivane {
namespace {

bool isSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && !std::string_view(value).empty();
}

/// The build says where the module lies, seen from the program's folder.
std::filesystem::path moduleFile() {
  std::error_code failed;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
  return (program.parent_path() / BRIVANE_QT_MODULE).lexically_normal();
}

/// Null with a problem. The module stays loaded: Qt can't be unloaded.
OpenQtFrameFunction load(std::string& problem) {
  void* const module = ::dlopen(moduleFile().c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const function = module == nullptr ? nullptr : ::dlsym(module, openQtFrameName);
  if (function == nullptr) problem = std::string(::dlerror()) + " (package libqt6widgets6)";
  return reinterpret_cast<OpenQtFrameFunction>(function);
}

}  // namespace

bool hasScreen() {
  return isSet("DISPLAY") || isSet("QT_QPA_PLATFORM");
}

std::unique_ptr<Frame> openQtFrame(ResidentMachine& machine,
                                   std::shared_ptr<AppearanceSource> appearance,
                                   SharedWindowSystem* windowSystem,
                                   std::shared_ptr<LiveDesk> desk) {
  auto* const mainQueue = dynamic_cast<HostedMainQueue*>(&machine.runtime());
  if (mainQueue == nullptr) return nullptr;
  QtFrameRequest request{machine, *mainQueue,   std::move(appearance),
                         {},      windowSystem, std::move(desk)};
  const auto open = load(request.problem);
  std::unique_ptr<Frame> frame(open == nullptr ? nullptr : open(request));
  if (!frame) {
    machine.log().write("Brivane: nothing can be shown on a screen: " + request.problem);
  }
  return frame;
}

}  // namespace brivane
