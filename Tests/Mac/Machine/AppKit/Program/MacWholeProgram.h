#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/Fakes/FakeInput.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"
#include "Tests/Mac/Machine/MacUnderTest.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {

/// The program as a Mac runs it, from its `main` to the signal that ends it, in real time: only the
/// system's interfaces are stand-ins.
class MacWholeProgram : public testing::Test {
 protected:
  MacWholeProgram();

  // The course of a run

  /// That long after the step before; the last one is to end the program.
  void then(double seconds, Task work);
  /// As soon as that is so; fails when it has not come about for so long that it never will.
  void waitUntil(std::function<bool()> isSo, const char* file = __builtin_FILE(),
                 int line = __builtin_LINE());
  void thenEnd(double seconds);
  int run(const std::vector<std::string>& words = {});

  // The user and the windows

  /// In the open menu.
  NSSlider* slider(const std::string& label);
  bool hasSlider(const std::string& label);
  bool isTicked(const std::string& title);
  void chooseFromTheMenu(const std::string& title);
  void dragRightTo(double level);
  NSWindow* editor();
  void clickTheFirstField();

  // What becomes of it

  int levelShownOnRight() const;
  /// The white of the gamma table that is in force: 1 where nothing is dimmed.
  static float whiteOfRight();
  /// In the system's mapping.
  int mappedKeys() const;
  /// Nobody else can have it then.
  static bool isTaken(std::uint16_t keyCode, std::uint32_t modifiers);
  static bool hasItsHotkey();
  static const PropertyValue::Dictionary& settings();

  FakeDesktop& desktop = FakeDesktop::shared();
  const NothingIsLeft check;
  const TestPool pool;
  MacWorld world;

 private:
  struct Step {
    double seconds = 0;
    Task work;
    std::function<bool()> isSo;
    const char* file = nullptr;
    int line = 0;
  };

  void takeNextStep();
  void takeStep(const Step& step, double waitedSeconds);

  std::list<Step> steps;
};

}  // namespace brivane
