#include "Machines/Desk/Frame/FrameEditor.h"

#include <algorithm>

#include "Machines/Desk/Frame/Picture.h"

namespace brivane {
namespace {

std::string line(const WindowLabel& item) {
  return "label \"" + item.text + "\"";
}

std::string line(const WindowButton& item) {
  return "button \"" + item.title + "\"";
}

std::string line(const WindowView& item) {
  return "field \"" + item.accessibilityLabel + "\" reads \"" + item.view->accessibilityText() +
         "\", picture " + pictureDigest(item.view->draw());
}

}  // namespace

/// Requests to redraw a view within one task are merged.
class DeskEditorWindow::Host : public CustomViewHost {
 public:
  Host(DeskEditorWindow& hostWindow, const WindowView& hostedField)
      : window(hostWindow), field(hostedField) {}

  void setNeedsDisplay() override {
    if (needsDisplay) return;
    needsDisplay = true;
    window.runtime.async([this, watch = anchor.watch()] {
      if (!watch.isAlive()) return;
      needsDisplay = false;
      window.trace("editor | " + line(field));
    });
  }

  void makeFirstResponder() override {
    if (window.firstResponder == field.view || !field.view->acceptsFirstResponder()) return;
    window.loseFocus();
    if (window.firstResponder != nullptr) return;
    window.firstResponder = field.view;
    window.trace("editor gives the keys to field \"" + field.accessibilityLabel + "\"");
  }

  void resignFirstResponder() override {
    if (window.firstResponder == field.view) window.loseFocus();
  }

  void beep() override { window.application.beep(); }

  /// The view has left the window.
  void leave() const { field.view->setHost(nullptr); }

 private:
  DeskEditorWindow& window;
  const WindowView field;
  bool needsDisplay = false;
  LivenessAnchor anchor;
};

DeskEditorWindow::DeskEditorWindow(const EditorWindowAttributes& windowAttributes,
                                   Runtime& frameRuntime, DeskApplication& frameApplication,
                                   Trace frameTrace)
    : ownAttributes(windowAttributes),
      runtime(frameRuntime),
      application(frameApplication),
      trace(std::move(frameTrace)) {
  trace("editor made, \"" + ownAttributes.title + "\"");
}

DeskEditorWindow::~DeskEditorWindow() {
  anchor.kill();
  for (const auto& host : hosts) host->leave();
}

void DeskEditorWindow::center() {
  trace("editor centred");
}

void DeskEditorWindow::setContent(std::vector<WindowItem> newItems) {
  firstResponder = nullptr;
  for (const auto& host : hosts) host->leave();
  hosts.clear();
  items = std::move(newItems);
  for (const WindowItem& item : items) {
    const auto* const field = std::get_if<WindowView>(&item);
    if (field == nullptr) continue;
    hosts.push_back(std::make_unique<Host>(*this, *field));
    field->view->setHost(hosts.back().get());
  }
  trace("editor content, " + std::to_string(items.size()) + " items");
  for (const auto& text : lines()) trace("editor | " + text);
}

void DeskEditorWindow::makeKeyAndOrderFront() {
  if (!isOrderedIn) trace("editor in front");
  isOrderedIn = true;
}

bool DeskEditorWindow::click(const std::string& accessibilityLabel) {
  for (const WindowItem& item : items) {
    const auto* const field = std::get_if<WindowView>(&item);
    if (field == nullptr || field->accessibilityLabel != accessibilityLabel) continue;
    field->view->mouseDown();
    return true;
  }
  return false;
}

bool DeskEditorWindow::press(const KeyPress& keyPress) {
  return firstResponder != nullptr && firstResponder->keyDown(keyPress);
}

bool DeskEditorWindow::pressButton(const std::string& title) {
  for (const WindowItem& item : items) {
    const auto* const button = std::get_if<WindowButton>(&item);
    if (button == nullptr || button->title != title) continue;
    const auto pressed = button->pressed;
    if (pressed) pressed();
    return true;
  }
  return false;
}

void DeskEditorWindow::close() {
  if (!isOrderedIn) return;
  trace("editor closes");
  loseFocus();
  const auto handler = willClose;
  const auto watch = anchor.watch();
  if (handler) handler();
  if (watch.isAlive()) isOrderedIn = false;
}

std::vector<std::string> DeskEditorWindow::lines() const {
  std::vector<std::string> texts(items.size());
  std::ranges::transform(items, texts.begin(), [](const WindowItem& item) {
    return std::visit([](const auto& kind) { return line(kind); }, item);
  });
  return texts;
}

std::optional<std::string> DeskEditorWindow::focusedField() const {
  for (const WindowItem& item : items) {
    const auto* const field = std::get_if<WindowView>(&item);
    if (field != nullptr && field->view == firstResponder) return field->accessibilityLabel;
  }
  return std::nullopt;
}

/// Takes the focus from the focused view, if it agrees.
void DeskEditorWindow::loseFocus() {
  if (firstResponder == nullptr || !firstResponder->resignFirstResponder()) return;
  firstResponder = nullptr;
  trace("editor takes the keys back");
}

}  // namespace brivane
