#pragma once

#include <QCoreApplication>
#include <QImage>
#include <functional>
#include <memory>
#include <string>

#include "Machines/Common/Topic.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Machines/Qt/Frame/Frame.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// How long a test waits at most for what a busy machine does late.
inline constexpr int patienceMilliseconds = 60'000;

/// The source of light or dark.
class AppearanceSwitch : public AppearanceSource {
 public:
  Appearance appearance() override { return now; }
  Observation observe(Task handler) override { return changes.observe(std::move(handler)); }
  void turn(Appearance appearance) {
    now = appearance;
    changes.announce();
  }

 private:
  Appearance now = Appearance::light;
  Topic changes;
};

/// A desk in real time, and the one Qt frame of the process on it, without a screen.
class QtBench {
 public:
  /// Made at the first call; a process can have one.
  static QtBench& shared();
  struct Setting {
    double pixelsPerPoint = 1;
    /// The bus of the desktop's settings portal, in place of the switch.
    std::string sessionBus = {};
    /// The text of another desk, whose monitors are shown as windows.
    std::string deskText = {};
  };
  /// Replaces it by another.
  static QtBench& renewed(const Setting& setting);
  static void drop();

  QtFrame& frame() { return *ownFrame; }
  DeskMachine& machine() { return *desk; }
  /// The folder of the desk's file, "desk.json".
  const std::filesystem::path& home() const { return folder.path; }
  Runtime& runtime() { return desk->runtime(); }
  AppearanceSwitch& appearance() { return *appearanceSwitch; }

  /// Runs Qt's loop until the condition holds; false after a minute.
  bool runUntil(const std::function<bool()>& holds);
  /// Runs what is due now.
  void settle();

 private:
  explicit QtBench(const Setting& setting);

  TemporaryFolder folder;
  std::unique_ptr<DeskMachine> desk;
  std::shared_ptr<AppearanceSwitch> appearanceSwitch = std::make_shared<AppearanceSwitch>();
  std::unique_ptr<QtFrame> ownFrame;
};

/// Compares with Tests/Golden/qt/<name>.png, letting pixels at the edges of letters differ a
/// little; with BRIVANE_REGENERATE=1 the picture becomes the golden file.
void expectGoldenPicture(const std::string& name, const QImage& picture);

}  // namespace brivane
