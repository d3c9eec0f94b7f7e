// A window or button that is dropped from within its own event is retained until AppKit has
// returned from the event.
#include "Machines/Mac/Frame/EditorWindow.h"

#include <utility>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/FieldView.h"

/// The AppKit window's delegate and the buttons' target. It may outlive the window, which clears
/// the pointer.
@interface BrivaneEditorHands : NSObject <NSWindowDelegate> {
 @public
  brivane::MacEditorWindow* window;
}
- (void)pressed:(NSButton*)button;
@end

@implementation BrivaneEditorHands

- (void)windowWillClose:(NSNotification*)notification {
  if (window != nullptr) window->willClose();
}

- (void)windowDidResignKey:(NSNotification*)notification {
  if (window != nullptr) window->losesKeyboard();
}

- (void)pressed:(NSButton*)button {
  if (window != nullptr) window->pressed(button);
}

@end

namespace brivane {
namespace {

constexpr double controlFontSize = 13;
/// The width of a rounded button beside its title.
constexpr double bezelWidth = 24;
/// The width of a text field beside its text.
constexpr double textPadding = 4;

NSFont* fittedFont(NSString* text, double size, double width) {
  NSFont* font = [NSFont systemFontOfSize:size];
  while (size > smallestFontSize &&
         [text sizeWithAttributes:@{NSFontAttributeName : font}].width > width) {
    size -= 1;
    font = [NSFont systemFontOfSize:size];
  }
  return font;
}

}  // namespace

class MacEditorWindow::Host : public CustomViewHost {
 public:
  Host(NSWindow* hostWindow, CustomView* hostedView, BrivaneFieldView* fieldView)
      : window(hostWindow), view(hostedView), field(fieldView) {}

  void setNeedsDisplay() override { field.needsDisplay = YES; }
  void makeFirstResponder() override {
    if (field.acceptsFirstResponder) [window makeFirstResponder:field];
  }
  void resignFirstResponder() override {
    if (window.firstResponder == field) [window makeFirstResponder:nil];
  }
  void beep() override { NSBeep(); }

  /// The view has left the window.
  void leave() {
    [field leaveField];
    view->setHost(nullptr);
  }

 private:
  NSWindow* const window;
  CustomView* const view;
  BrivaneFieldView* const field;
};

MacEditorWindow::MacEditorWindow(const EditorWindowAttributes& attributes, Runtime& frameRuntime,
                                 MacApplication& application)
    : runtime(frameRuntime),
      window([[NSWindow alloc]
          initWithContentRect:NSMakeRect(0, 0, attributes.contentWidth, attributes.contentHeight)
                    styleMask:static_cast<NSWindowStyleMask>(attributes.styleMask)
                      backing:static_cast<NSBackingStoreType>(attributes.backing)
                        defer:attributes.isDeferred]),
      hands([[BrivaneEditorHands alloc] init]),
      applicationEnds(application.observeEnd([this] { letGo(); })) {
  hands->window = this;
  window.title = nsString(attributes.title);
  window.releasedWhenClosed = attributes.isReleasedWhenClosed;
  // Otherwise the system would store the window's state, to open it again at the next start.
  window.restorable = NO;
  window.collectionBehavior =
      NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;
  window.delegate = hands;
}

MacEditorWindow::~MacEditorWindow() {
  letGo();
  [window orderOut:nil];
  keepForNow(window);
}

/// Disconnects from AppKit: the user's further input is ignored.
void MacEditorWindow::letGo() {
  hands->window = nullptr;
  window.delegate = nil;
  for (const Button& own : buttons) own.button.target = nil;
  leaveFields();
}

void MacEditorWindow::center() {
  [window center];
}

double MacEditorWindow::contentWidth() {
  return window.contentView.frame.size.width;
}

double MacEditorWindow::contentHeight() {
  return window.contentView.frame.size.height;
}

void MacEditorWindow::makeKeyAndOrderFront() {
  bringToFront(window);
}

void MacEditorWindow::setContent(std::vector<WindowItem> newItems) {
  leaveFields();
  [window makeFirstResponder:nil];
  keepForNow(window.contentView);
  buttons.clear();
  NSView* const content =
      [[NSView alloc] initWithFrame:NSMakeRect(0, 0, contentWidth(), contentHeight())];
  for (const WindowItem& item : newItems) {
    [content addSubview:std::visit([this](const auto& part) { return make(part); }, item)];
  }
  window.contentView = content;
}

NSView* MacEditorWindow::make(const WindowLabel& label) {
  NSString* const text = nsString(label.text);
  NSTextField* const field = [NSTextField labelWithString:text];
  field.frame = nsRect(label.frame);
  field.font = fittedFont(text, label.fontSize, label.frame.width - textPadding);
  return field;
}

NSView* MacEditorWindow::make(const WindowButton& button) {
  NSString* const title = nsString(button.title);
  NSButton* const control = [NSButton buttonWithTitle:title
                                               target:hands
                                               action:@selector(pressed:)];
  control.bezelStyle = NSBezelStyleRounded;
  control.frame = nsRect(button.frame);
  control.font = fittedFont(title, controlFontSize, button.frame.width - bezelWidth);
  buttons.push_back({control, button.pressed});
  return control;
}

NSView* MacEditorWindow::make(const WindowView& field) {
  BrivaneFieldView* const view = [[BrivaneFieldView alloc] initWithField:field];
  hosts.push_back(std::make_unique<Host>(window, field.view, view));
  field.view->setHost(hosts.back().get());
  return view;
}

void MacEditorWindow::leaveFields() {
  for (const auto& host : std::exchange(hosts, {})) host->leave();
}

void MacEditorWindow::keepForNow(NSObject* object) {
  runtime.async([object] { (void)object; });
}

void MacEditorWindow::willClose() {
  losesKeyboard();
  giveFocusBack();
  const Task handler = whenClosing;
  if (handler) handler();
}

/// An application without a window keeps the keyboard until it is hidden. The window is still there
/// now, and would come back with the application.
void MacEditorWindow::giveFocusBack() {
  NSWindow* const closed = window;
  runtime.async([closed] {
    if (!closed.visible) [NSApplication.sharedApplication hide:nil];
  });
}

void MacEditorWindow::losesKeyboard() {
  [window makeFirstResponder:nil];
}

void MacEditorWindow::pressed(NSButton* button) {
  for (const Button& own : buttons) {
    if (own.button != button) continue;
    const auto handler = own.pressed;
    if (handler) handler();
    return;
  }
}

}  // namespace brivane
