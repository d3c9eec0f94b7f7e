// The frame suite on the desk's recording frame, in virtual time.
#include <utility>

#include "Machines/Desk/Frame/Frame.h"
#include "Tests/FrameConformance/FrameUnderTest.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

class DeskFrameUnderTest : public FrameUnderTest {
 public:
  Frame& frame() override { return ownFrame; }
  Runtime& runtime() override { return desk.time(); }
  void pass(double seconds) override { desk.time().runFor(fromSeconds(seconds)); }
  void change(Appearance appearance) override {
    ownFrame.application().changeAppearance(appearance);
  }

  std::vector<std::string> heard() override { return std::exchange(said, {}); }

  void openMenu() override { menu().open(); }
  void closeMenu() override { menu().close(); }
  void choose(const std::string& title) override { EXPECT_TRUE(menu().choose(title)) << title; }
  void drag(std::size_t slider, double value) override {
    const auto found = menu().findSlider("", slider + 1);
    ASSERT_TRUE(found.has_value());
    menu().move(*found, value);
  }

  void click(const std::string& label) override {
    EXPECT_TRUE(ownFrame.editorWindow()->click(label)) << label;
  }
  void press(const KeyPress& key) override { ownFrame.editorWindow()->press(key); }
  void pressButton(const std::string& title) override {
    EXPECT_TRUE(ownFrame.editorWindow()->pressButton(title)) << title;
  }
  void closeEditor() override { ownFrame.editorWindow()->close(); }
  void leaveEditor() override { ownFrame.editorWindow()->loseKeyboard(); }

 private:
  DeskMenu& menu() { return ownFrame.statusItem()->menu(); }

  void note(const std::string& line) {
    static const std::string prefix = "hud says \"";
    if (!line.starts_with(prefix)) return;
    said.push_back(line.substr(prefix.size(), line.size() - prefix.size() - 1));
  }

  std::vector<std::string> said;
  TestDesk desk{R"({"displays": []})"};
  DeskFrame ownFrame{desk.time(), desk.machine->hardware(),
                     [this](const std::string& line) { note(line); }};
};

}  // namespace

std::unique_ptr<FrameUnderTest> makeFrameUnderTest() {
  return std::make_unique<DeskFrameUnderTest>();
}

}  // namespace brivane
