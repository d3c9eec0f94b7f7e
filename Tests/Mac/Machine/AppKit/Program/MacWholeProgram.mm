#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"

#include <CoreFoundation/CoreFoundation.h>

#include <csignal>
#include <filesystem>

#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"

/// `main`, under another name.
int brivaneMain(int argc, char** argv);

namespace brivane {
namespace {

void runLater(double seconds, Task task) {
  CFRunLoopTimerContext context = {0, new Task(std::move(task)), nullptr,
                                   [](const void* info) { delete static_cast<const Task*>(info); },
                                   nullptr};
  CFRunLoopTimerRef const timer = CFRunLoopTimerCreate(
      kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + seconds, 0, 0, 0,
      [](CFRunLoopTimerRef, void* info) {
        @autoreleasepool {
          const Task called = *static_cast<const Task*>(info);
          called();
        }
      },
      &context);
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer, kCFRunLoopCommonModes);
  CFRelease(timer);
}

}  // namespace

MacWholeProgram::MacWholeProgram() {
  desktop.loop.run = [] { CFRunLoopRun(); };
  desktop.loop.stop = [] { CFRunLoopStop(CFRunLoopGetMain()); };
  desktop.loop.async = fake::postToMainLoop;
  desktop.loop.after = runLater;
  desktop.menuTracks = [](bool isTracking) { fake::input().setMenuTracking(isTracking); };
  desktop.contentOfEvent = [](CGEventRef event) -> std::optional<FakeEventContent> {
    const auto details = fake::detailsOf(event);
    if (!details) return std::nullopt;
    return FakeEventContent{NSEventTypeSystemDefined, details->subtype, details->data1,
                            details->data2};
  };
  unsigned int number = 0;
  for (const ExpectedDisplay& display : world.expectedDisplays()) {
    [desktop.screens addObject:makeFakeScreen([NSNumber numberWithUnsignedInt:++number],
                                              display.frame, display.name, 1)];
  }
  desktop.pointer = NSMakePoint(1600, 100);
  const auto program = std::filesystem::read_symlink("/proc/self/exe");
  fake::system().executable = program.string();
  fake::system().resourceFolder = (program.parent_path().parent_path() / "share/brivane").string();
}

void MacWholeProgram::then(double seconds, Task work) {
  steps.push_back({.seconds = seconds, .work = std::move(work)});
}

void MacWholeProgram::waitUntil(std::function<bool()> isSo, const char* file, int line) {
  steps.push_back({.work = [] {}, .isSo = std::move(isSo), .file = file, .line = line});
}

void MacWholeProgram::thenEnd(double seconds) {
  then(seconds, [] { std::raise(SIGTERM); });
}

int MacWholeProgram::run(const std::vector<std::string>& words) {
  takeNextStep();
  std::vector<std::string>& line = fake::system().arguments;
  line = {"Brivane"};
  line.insert(line.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  for (std::string& word : line) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const int status = brivaneMain(static_cast<int>(line.size()), arguments.data());
  desktop.endProcess();
  return status;
}

void MacWholeProgram::takeNextStep() {
  if (steps.empty()) return;
  const Step step = std::move(steps.front());
  steps.pop_front();
  runLater(step.seconds, [this, step] { takeStep(step, 0); });
}

void MacWholeProgram::takeStep(const Step& step, double waitedSeconds) {
  constexpr double lookSeconds = 0.02;
  constexpr double neverSeconds = 20;
  if (step.isSo && !step.isSo()) {
    if (waitedSeconds < neverSeconds) {
      runLater(lookSeconds, [=, this] { takeStep(step, waitedSeconds + lookSeconds); });
      return;
    }
    ADD_FAILURE_AT(step.file, step.line) << "it never came about";
  }
  step.work();
  takeNextStep();
}

NSSlider* MacWholeProgram::slider(const std::string& label) {
  for (NSMenuItem* item in itemsOf(desktop.openMenu)) {
    if (item.view == nil) continue;
    for (NSView* const& view : viewsBelow(item.view)) {
      if ([view accessibilityLabel] == nil) continue;
      if (textOf([view accessibilityLabel]).find(label) == std::string::npos) continue;
      return static_cast<NSSlider*>(view);
    }
  }
  return nil;
}

bool MacWholeProgram::hasSlider(const std::string& label) {
  if (desktop.statusItems.count == 0) return false;
  desktop.open(desktop.statusItems[0].menu);
  const bool isThere = slider(label) != nil;
  desktop.close();
  return isThere;
}

bool MacWholeProgram::isTicked(const std::string& title) {
  desktop.open(desktop.statusItems[0].menu);
  NSMenuItem* found = nil;
  for (NSMenuItem* item in itemsOf(desktop.openMenu)) {
    if (textOf(item.title) == title) found = item;
  }
  EXPECT_NE(found, nil) << "no item " << title;
  const bool ticked = found.state == NSControlStateValueOn;
  desktop.close();
  return ticked;
}

void MacWholeProgram::chooseFromTheMenu(const std::string& title) {
  desktop.open(desktop.statusItems[0].menu);
  desktop.choose(title);
}

void MacWholeProgram::dragRightTo(double level) {
  desktop.open(desktop.statusItems[0].menu);
  ASSERT_NE(slider("Right"), nil);
  desktop.drag(slider("Right"), level);
  desktop.close();
}

NSWindow* MacWholeProgram::editor() {
  return desktop.windowTitled("Brightness Hotkeys");
}

void MacWholeProgram::clickTheFirstField() {
  for (NSView* const& view : viewsBelow(editor().contentView)) {
    if ([view fakeRole] == nil) continue;
    desktop.click(view, editor());
    return;
  }
}

int MacWholeProgram::levelShownOnRight() const {
  return world.monitors[2]->state.shownLevel;
}

float MacWholeProgram::whiteOfRight() {
  const std::lock_guard lock(fake::mac().mutex);
  const auto& red = fake::mac().displays[2].table.red;
  return red.empty() ? 1 : red.back();
}

int MacWholeProgram::mappedKeys() const {
  const std::string mapping = TemporaryFolder::read(world.folder / "mapping");
  int count = 0;
  for (auto at = mapping.find("Dst"); at != std::string::npos; at = mapping.find("Dst", at + 1)) {
    ++count;
  }
  return count;
}

bool MacWholeProgram::isTaken(std::uint16_t keyCode, std::uint32_t modifiers) {
  const auto added = fake::input().hotkeys.add({keyCode, modifiers}, nullptr);
  const auto* const reference = std::get_if<HotkeyReference>(&added);
  return reference == nullptr || !fake::input().hotkeys.remove(*reference);
}

bool MacWholeProgram::hasItsHotkey() {
  return isTaken(upArrow, controlAndOption);
}

const PropertyValue::Dictionary& MacWholeProgram::settings() {
  return fake::system().preferences.stored["com.quorrel.brivane"];
}

}  // namespace brivane
