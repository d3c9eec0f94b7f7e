// The frame suite on AppKit's stand-in, in virtual time.
#include "Tests/FrameConformance/FrameUnderTest.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

namespace brivane {
namespace {

class MacFrameUnderTest : public FrameUnderTest {
 public:
  Frame& frame() override { return *bench.frame; }
  Runtime& runtime() override { return bench.runtime; }
  void pass(double seconds) override { bench.pass(seconds); }
  void change(Appearance appearance) override {
    bench.desktop.setDark(appearance == Appearance::dark);
  }

  std::vector<std::string> heard() override { return std::exchange(bench.desktop.heard, {}); }

  void openMenu() override { bench.desktop.open(menu()); }
  void closeMenu() override { bench.desktop.close(); }
  void choose(const std::string& title) override { bench.desktop.choose(title); }
  void drag(std::size_t slider, double value) override {
    std::vector<NSSlider*> sliders;
    for (NSMenuItem* item in itemsOf(menu())) {
      if (item.view == nil) continue;
      for (NSView* const& view : viewsBelow(item.view)) {
        if ([view isKindOfClass:[NSSlider class]]) sliders.push_back(static_cast<NSSlider*>(view));
      }
    }
    bench.desktop.drag(sliders.at(slider), value);
  }

  void click(const std::string& label) override {
    for (NSView* const& view : viewsBelow(editor().contentView)) {
      if ([view accessibilityLabel] == nil || textOf([view accessibilityLabel]) != label) continue;
      bench.desktop.click(view, editor());
      return;
    }
    ADD_FAILURE() << "no field " << label;
  }
  void press(const KeyPress& key) override {
    bench.desktop.press(editor(), key.keyCode,
                        static_cast<NSEventModifierFlags>(key.modifierFlags));
  }
  void pressButton(const std::string& title) override {
    NSButton* __weak found = nil;
    @autoreleasepool {
      for (NSView* const& view : viewsBelow(editor().contentView)) {
        if (![view isKindOfClass:[NSButton class]]) continue;
        auto* const button = static_cast<NSButton*>(view);
        if (textOf(button.title) == title) found = button;
      }
    }
    if (found == nil) FAIL() << "no button " << title;
    bench.desktop.press(found);
  }
  void closeEditor() override {
    // AppKit keeps it no longer than the program does.
    NSWindow* __unsafe_unretained window = nil;
    @autoreleasepool {
      window = editor();
    }
    [window fakeUserCloses];
  }
  void leaveEditor() override { [editor() fakeResignsKey]; }

 private:
  NSMenu* menu() {
    NSArray<NSStatusItem*>* const items = bench.desktop.statusItems;
    return items[items.count - 1].menu;
  }
  NSWindow* editor() { return bench.desktop.windowTitled("Editor"); }

  AppKitBench bench;
};

}  // namespace

std::unique_ptr<FrameUnderTest> makeFrameUnderTest() {
  return std::make_unique<MacFrameUnderTest>();
}

}  // namespace brivane
