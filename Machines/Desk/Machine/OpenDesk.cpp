#include "Machines/Desk/Machine/OpenDesk.h"

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Machines/Desk/Machine/Log.h"

namespace brivane {

std::variant<std::unique_ptr<DeskMachine>, std::string> openDesk(
    const std::filesystem::path& file) {
  auto read = readDeskFile(file);
  if (auto* error = std::get_if<std::string>(&read)) return std::move(*error);
  auto runtime = std::make_unique<ThreadRuntime>();
  auto log = std::make_unique<StandardErrorLog>();
  std::filesystem::path folder = file;
  folder += ".state";
  auto hardware =
      std::make_shared<DeskHardware>(std::get<DeskDescription>(std::move(read)),
                                     std::make_unique<StateFolder>(folder, *runtime, *log));
  return std::make_unique<DeskMachine>(std::move(runtime), std::move(log), std::move(hardware),
                                       DeskProcess{true, resourceFolder()});
}

}  // namespace brivane
