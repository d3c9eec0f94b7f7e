#include "Tests/Support/FakeFrame.h"

#include <algorithm>
#include <array>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

std::string decimal(double value) {
  std::string text = std::to_string(value);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string line(const MenuText& item) {
  static constexpr std::array tones = {"label", "secondary", "tertiary"};
  return std::string("text ") + tones.at(static_cast<std::size_t>(item.tone)) + " " + item.title;
}

std::string line(const MenuSlider& item) {
  return "slider " + decimal(item.minimum) + ".." + decimal(item.maximum) + " " +
         decimal(item.value) + " " + item.accessibilityLabel;
}

std::string line(const MenuCommand& item) {
  std::string text = item.isChecked ? "command [x] " : "command [ ] ";
  text += item.title;
  if (!item.keyEquivalent.empty()) text += " key " + item.keyEquivalent;
  return text;
}

std::string line(const MenuSeparator& /*item*/) {
  return "separator";
}

}  // namespace

void FakeApplication::setDelegate(ApplicationDelegate* newDelegate) {
  notes.add("set delegate");
  delegate = newDelegate;
}

void FakeApplication::setActivationPolicy(ActivationPolicy newPolicy) {
  notes.add("set activation policy " + std::to_string(static_cast<int>(newPolicy)));
  policy = newPolicy;
}

int FakeApplication::run() {
  notes.add("run");
  runtime.async([this] { delegate->applicationDidFinishLaunching(); });
  runtime.run();
  return exitStatus.value_or(0);
}

void FakeApplication::terminate() {
  notes.add("terminate");
  if (std::exchange(isTerminating, true)) return;
  if (delegate != nullptr) delegate->applicationWillTerminate();
  exitStatus = 0;
  runtime.stop();
}

void FakeApplication::exit(int newStatus) {
  notes.add("exit " + std::to_string(newStatus));
  exitStatus = newStatus;
  runtime.stop();
}

void FakeApplication::activateIgnoringOtherApplications() {
  notes.add("activate");
}

void FakeApplication::change(Appearance newAppearance) {
  if (appearance == newAppearance) return;
  appearance = newAppearance;
  appearanceTopic.announce();
}

void FakeMenu::setItems(std::vector<MenuItem> newItems) {
  items = std::move(newItems);
  ++rebuilds;
}

void FakeMenu::setTitle(std::size_t index, const std::string& title) {
  if (auto* const text = std::get_if<MenuText>(&items.at(index))) {
    text->title = title;
  } else {
    std::get<MenuCommand>(items.at(index)).title = title;
  }
}

void FakeMenu::setChecked(std::size_t index, bool isChecked) {
  std::get<MenuCommand>(items.at(index)).isChecked = isChecked;
}

void FakeMenu::setSliderValue(std::size_t index, double value) {
  std::get<MenuSlider>(items.at(index)).value = value;
}

double FakeMenu::sliderValue(std::size_t index) {
  return std::get<MenuSlider>(items.at(index)).value;
}

void FakeMenu::popUp() {
  if (!isOpen) open();
}

void FakeMenu::open() {
  isOpen = true;
  if (delegate != nullptr) delegate->menuWillOpen();
}

void FakeMenu::close() {
  isOpen = false;
  delegate->menuDidClose();
}

void FakeMenu::choose(const std::string& title) {
  for (const MenuItem& item : items) {
    const auto* const command = std::get_if<MenuCommand>(&item);
    if (command == nullptr || command->title != title) continue;
    const auto chosen = command->chosen;
    const int before = rebuilds;
    close();
    if (rebuilds == before) chosen();
    return;
  }
  fatal("the menu has no command " + title);
}

void FakeMenu::drag(std::size_t index, double value) {
  auto& slider = std::get<MenuSlider>(items.at(index));
  slider.value = value;
  const auto moved = slider.moved;
  moved(value);
}

std::vector<std::string> FakeMenu::lines() const {
  std::vector<std::string> lines(items.size());
  std::ranges::transform(items, lines.begin(), [](const MenuItem& item) {
    return std::visit([](const auto& kind) { return line(kind); }, item);
  });
  return lines;
}

void FakeHUDWindow::setFrame(const Rect& newFrame) {
  notes.add("move HUD");
  ownFrame = newFrame;
}

void FakeHUDWindow::setAlpha(double newAlpha) {
  notes.add("HUD alpha " + decimal(newAlpha));
  alpha = newAlpha;
}

void FakeHUDWindow::animateAlpha(double newAlpha, double durationSeconds, AnimationTiming timing,
                                 Task completion) {
  notes.add("HUD alpha to " + decimal(newAlpha) + " in " + decimal(durationSeconds) +
            (timing == AnimationTiming::easeIn ? " ease-in" : " linear"));
  alpha = newAlpha;
  if (completion) runtime.after(fromSeconds(durationSeconds), std::move(completion));
}

void FakeHUDWindow::orderFrontRegardless() {
  notes.add("HUD front");
  visible = true;
}

void FakeHUDWindow::orderOut() {
  notes.add("HUD out");
  visible = false;
}

void FakeHUDWindow::installContentView(const DisplayList& newContent) {
  notes.add("new HUD view");
  content = newContent;
  ++installations;
}

void FakeHUDWindow::updateContent(const DisplayList& newContent, ContentChange change) {
  notes.add(change == ContentChange::animated ? "HUD content moves" : "HUD content at once");
  content = newContent;
  lastChange = change;
}

void FakeHUDWindow::announce(const std::string& text) {
  if (visible) announcements.push_back(text);
}

class FakeEditorWindow::Host : public CustomViewHost {
 public:
  Host(FakeEditorWindow& hostWindow, CustomView& hostedView)
      : window(hostWindow), view(hostedView) {}

  void setNeedsDisplay() override { ++window.redraws; }
  void makeFirstResponder() override {
    if (window.firstResponder == &view || !view.acceptsFirstResponder()) return;
    resignFirstResponder();
    window.firstResponder = &view;
  }
  void resignFirstResponder() override {
    CustomView* const former = window.firstResponder;
    if (former != nullptr && former->resignFirstResponder()) window.firstResponder = nullptr;
  }
  void beep() override { window.owner.beep(); }

 private:
  FakeEditorWindow& window;
  CustomView& view;
};

FakeEditorWindow::FakeEditorWindow(const EditorWindowAttributes& windowAttributes,
                                   FakeApplication& application, CallNotes& callNotes)
    : attributes(windowAttributes), owner(application), notes(callNotes) {}

FakeEditorWindow::~FakeEditorWindow() {
  for (CustomView* const view : views()) view->setHost(nullptr);
}

void FakeEditorWindow::center() {
  notes.add("center editor");
}

void FakeEditorWindow::setContent(std::vector<WindowItem> newItems) {
  for (CustomView* const view : views()) view->setHost(nullptr);
  firstResponder = nullptr;
  hosts.clear();
  items = std::move(newItems);
  ++contentChanges;
  for (CustomView* const view : views()) {
    hosts.push_back(std::make_unique<Host>(*this, *view));
    view->setHost(hosts.back().get());
  }
}

void FakeEditorWindow::makeKeyAndOrderFront() {
  notes.add("editor to front");
  visible = true;
}

std::vector<CustomView*> FakeEditorWindow::views() const {
  std::vector<CustomView*> views;
  for (const WindowItem& item : items) {
    if (const auto* const part = std::get_if<WindowView>(&item)) views.push_back(part->view);
  }
  return views;
}

void FakeEditorWindow::click(const std::string& label) const {
  for (const WindowItem& item : items) {
    const auto* const part = std::get_if<WindowView>(&item);
    if (part != nullptr && part->accessibilityLabel == label) return part->view->mouseDown();
  }
  fatal("the window has no view " + label);
}

bool FakeEditorWindow::press(const KeyPress& key) {
  return firstResponder != nullptr && firstResponder->keyDown(key);
}

void FakeEditorWindow::pressButton(const std::string& title) {
  for (const WindowItem& item : items) {
    const auto* const button = std::get_if<WindowButton>(&item);
    if (button == nullptr || button->title != title) continue;
    const auto pressed = button->pressed;
    pressed();
    return;
  }
  fatal("the window has no button " + title);
}

void FakeEditorWindow::loseKeyboard() {
  if (firstResponder != nullptr && firstResponder->resignFirstResponder()) firstResponder = nullptr;
}

void FakeEditorWindow::close() {
  loseKeyboard();
  if (willClose) willClose();
  visible = false;
}

namespace {

/// Clears `slot` when the program drops the object.
template <typename Part>
struct Tracked : Part {
  template <typename... Arguments>
  explicit Tracked(Part*& trackedSlot, Arguments&&... arguments)
      : Part(std::forward<Arguments>(arguments)...), slot(trackedSlot) {
    slot = this;
  }
  ~Tracked() override {
    if (slot == this) slot = nullptr;
  }
  Tracked(const Tracked&) = delete;
  Tracked& operator=(const Tracked&) = delete;

  Part*& slot;
};

}  // namespace

std::unique_ptr<StatusItem> FakeFrame::makeStatusItem() {
  return std::make_unique<Tracked<FakeStatusItem>>(statusItem);
}

std::unique_ptr<HUDWindow> FakeFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  ++hudWindowsMade;
  return std::make_unique<Tracked<FakeHUDWindow>>(hudWindow, attributes, runtime, notes,
                                                  announcements);
}

std::unique_ptr<EditorWindow> FakeFrame::makeEditorWindow(
    const EditorWindowAttributes& attributes) {
  ++editorWindowsMade;
  return std::make_unique<Tracked<FakeEditorWindow>>(editorWindow, attributes, app, notes);
}

}  // namespace brivane
