// The frame suite on the frame of the unit tests.
#include <utility>

#include "Tests/FrameConformance/FrameUnderTest.h"
#include "Tests/Support/FakeFrame.h"

namespace brivane {
namespace {

class FakeFrameUnderTest : public FrameUnderTest {
 public:
  Frame& frame() override { return ownFrame; }
  Runtime& runtime() override { return machine.time; }
  void pass(double seconds) override { machine.time.runFor(fromSeconds(seconds)); }
  void change(Appearance appearance) override { ownFrame.app.change(appearance); }

  std::vector<std::string> heard() override { return std::exchange(ownFrame.announcements, {}); }

  void openMenu() override { menu().open(); }
  void closeMenu() override { menu().close(); }
  void choose(const std::string& title) override { menu().choose(title); }
  void drag(std::size_t slider, double value) override {
    std::size_t index = 0;
    for (auto left = slider + 1; left > 0; ++index) {
      if (std::holds_alternative<MenuSlider>(menu().items.at(index))) --left;
    }
    menu().drag(index - 1, value);
  }

  void click(const std::string& label) override { ownFrame.editorWindow->click(label); }
  void press(const KeyPress& key) override { ownFrame.editorWindow->press(key); }
  void pressButton(const std::string& title) override { ownFrame.editorWindow->pressButton(title); }
  void closeEditor() override { ownFrame.editorWindow->close(); }
  void leaveEditor() override { ownFrame.editorWindow->loseKeyboard(); }

 private:
  FakeMenu& menu() { return ownFrame.statusItem->ownMenu; }

  FakeMachine machine;
  FakeFrame ownFrame{machine.time, machine.notes};
};

}  // namespace

std::unique_ptr<FrameUnderTest> makeFrameUnderTest() {
  return std::make_unique<FakeFrameUnderTest>();
}

}  // namespace brivane
