// Every change of a desk renames a file into its folder. The changes printed are differences
// between successive states of the hardware, so fast changes are merged.
#include "Tools/BrivaneDesk/WatchCommand.h"

#include <ostream>

#include "Machines/Desk/State/FolderWatch.h"
#include "Tools/BrivaneDesk/CommandDesk.h"
#include "Tools/BrivaneDesk/Steps/HardwareLines.h"

namespace brivane {
namespace {

using LinesByName = std::map<std::string, std::string>;

void print(const LinesByName& now, const LinesByName& before, std::ostream& out) {
  for (const auto& [part, text] : now) {
    const auto found = before.find(part);
    if (found == before.end() || found->second != text) out << part << ": " << text << std::endl;
  }
  for (const auto& [part, text] : before) {
    if (!now.contains(part)) out << part << ": gone" << std::endl;
  }
}

}  // namespace

int watchDesk(std::vector<std::string> words, std::ostream& out, std::ostream& errors) {
  const auto [desk, rest] = deskWords(std::move(words));
  if (!rest.empty()) {
    errors << "brivane-desk: watch needs nothing but a desk's file, found " << rest.front()
           << std::endl;
    return 2;
  }
  const auto opened = openLiveDesk(desk);
  if (const auto* const problem = std::get_if<std::string>(&opened)) {
    errors << "brivane-desk: " << *problem << std::endl;
    return 1;
  }
  auto& machine = *std::get<std::unique_ptr<DeskMachine>>(opened);
  auto& hardware = machine.hardware();
  const auto& folder = hardware.folder->path;
  const auto ending =
      machine.notifications().observeTermination([&machine] { machine.runtime().stop(); });
  const auto notices = hardware.events.observe<HardwareNotice>(
      [&out](HardwareNotice notice) { out << "notice " << noticeName(notice) << std::endl; });
  LinesByName before;
  const auto look = [&] {
    auto now = hardwareLines(hardware);
    print(now, before, out);
    before = std::move(now);
    hardware.events.deliver();
  };
  const FolderWatch watch(folder, "", machine.runtime(), look);
  if (!watch.isWatching()) {
    errors << "brivane-desk: " << folder.string() << " can't be watched" << std::endl;
    return 1;
  }
  hardware.events.follow();
  look();
  machine.runtime().run();
  return 0;
}

}  // namespace brivane
