#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/Frame/WindowNumbers.h"

namespace brivane {

/// A key press in a focused window. Modifier keys alone are not reported.
struct KeyPress {
  /// A virtual key code, see `Keyboard`.
  std::uint16_t keyCode = 0;
  /// See `modifierFlag`.
  std::uint64_t modifierFlags = 0;
};

/// The window of a custom view. Main thread.
class CustomViewHost {
 public:
  virtual ~CustomViewHost() = default;

  /// Redraws the view soon.
  virtual void setNeedsDisplay() = 0;
  /// Gives the view focus: key presses go to it. The view that had focus resigns.
  virtual void makeFirstResponder() = 0;
  /// Gives focus to the window itself; the view resigns if it had focus.
  virtual void resignFirstResponder() = 0;
  virtual void beep() = 0;
};

/// A view that draws itself and takes clicks and keys. Main thread.
class CustomView {
 public:
  virtual ~CustomView() = default;

  /// The host lives as long as the view is in a window; null when the view leaves.
  virtual void setHost(CustomViewHost* host) = 0;
  virtual bool acceptsFirstResponder() const = 0;
  virtual void mouseDown() = 0;
  /// False passes the press on to the window; a frame may offer the press once more before.
  virtual bool keyDown(const KeyPress& press) = 0;
  /// Whether the view agrees to lose focus.
  virtual bool resignFirstResponder() = 0;
  /// The picture of the view at the size of its frame.
  virtual DisplayList draw() const = 0;
  /// The view's value for assistive technology.
  virtual std::string accessibilityText() const = 0;
};

// The parts of a window's content. Frames are in points within the content view, origin at its
// lower left, y upwards. A label or title that doesn't fit, as translations may be long, is shown
// smaller, by whole points.

/// In points.
inline constexpr double smallestFontSize = 9;

struct WindowLabel {
  Rect frame;
  std::string text;
  double fontSize = 13;
};

struct WindowButton {
  Rect frame;
  /// With a rounded bezel.
  std::string title;
  /// Called on the main thread; may replace the window's content.
  std::function<void()> pressed;
};

struct WindowView {
  Rect frame;
  /// Must live as long as the view is in the window.
  CustomView* view = nullptr;
  std::string accessibilityLabel;
};

using WindowItem = std::variant<WindowLabel, WindowButton, WindowView>;

struct EditorWindowAttributes {
  double contentWidth = 0;
  double contentHeight = 0;
  std::uint64_t styleMask = borderlessStyle;
  std::uint64_t backing = bufferedBackingStore;
  bool isDeferred = false;
  bool isReleasedWhenClosed = true;
  std::string title;

  bool operator==(const EditorWindowAttributes&) const = default;
};

/// A small window with a few controls, closed at first. When the window closes or another one gets
/// focus, the focused view resigns and doesn't get focus back with the window. An open menu changes
/// no focus. A click or assistive press on a view focuses the window. Main thread.
class EditorWindow {
 public:
  virtual ~EditorWindow() = default;

  /// Called before the user closes the window, when no view has focus any more.
  virtual void onWillClose(Task handler) = 0;
  virtual void center() = 0;
  /// Replaces the content and releases its views; may be called from within a button's `pressed`.
  virtual void setContent(std::vector<WindowItem> items) = 0;
  /// The current size of the content.
  virtual double contentWidth() = 0;
  virtual double contentHeight() = 0;
  virtual void makeKeyAndOrderFront() = 0;
};

}  // namespace brivane
