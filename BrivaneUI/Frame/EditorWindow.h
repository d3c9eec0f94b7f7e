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

/// A press of a key in a window that has the keyboard's attention; of modifiers only what is down
/// with it is told.
struct KeyPress {
  /// A virtual key code, see `Keyboard`.
  std::uint16_t keyCode = 0;
  /// See `modifierFlag`.
  std::uint64_t modifierFlags = 0;
};

/// What a custom view may ask of the window that it is in. Main thread.
class CustomViewHost {
 public:
  virtual ~CustomViewHost() = default;

  /// Has the view drawn anew soon.
  virtual void setNeedsDisplay() = 0;
  /// Key presses go to the view; one that had them before is told that it resigns.
  virtual void makeFirstResponder() = 0;
  /// Key presses go to the window itself; the view is told that it resigns if it had them.
  virtual void resignFirstResponder() = 0;
  /// The system's alert sound.
  virtual void beep() = 0;
};

/// A view that draws itself and takes clicks and keys. Main thread.
class CustomView {
 public:
  virtual ~CustomView() = default;

  /// The host lives as long as the view is in a window; null when it leaves it.
  virtual void setHost(CustomViewHost* host) = 0;
  virtual bool acceptsFirstResponder() const = 0;
  virtual void mouseDown() = 0;
  /// False: the press goes on to the window.
  virtual bool keyDown(const KeyPress& press) = 0;
  /// Whether the view agrees to lose the keys.
  virtual bool resignFirstResponder() = 0;
  /// The picture of the view at the size of its frame.
  virtual DisplayList draw() const = 0;
  /// What assistive technology says of the view.
  virtual std::string accessibilityText() const = 0;
};

// The parts of a window's content. Frames are in points within the content view, origin at its
// lower left, y upwards. Translations are longer than what a place was made for: a label or a title
// that doesn't fit is shown smaller, by whole points.

/// No text is shown smaller than that, in points.
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
  /// Called on the main thread; it may replace the window's content.
  std::function<void()> pressed;
};

struct WindowView {
  Rect frame;
  /// Lives as long as it is content of the window.
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

/// A small window with a few controls. It begins closed. A view has the keys no longer than the
/// window does: when the window closes, or another one gets the keyboard, the view is told that it
/// resigns, and doesn't get the keys back with the window. An open menu takes nothing away. A click
/// on a view brings the window the keyboard, and so does assistive technology that presses one.
/// Main thread.
class EditorWindow {
 public:
  virtual ~EditorWindow() = default;

  /// Called before the window closes, as its user wishes, when no view has the keys any more.
  virtual void onWillClose(Task handler) = 0;
  virtual void center() = 0;
  /// Replaces the content. The views of the content before are given up by this call, which may
  /// come from within a button's `pressed`.
  virtual void setContent(std::vector<WindowItem> items) = 0;
  /// The size of the content as it is now.
  virtual double contentWidth() = 0;
  virtual double contentHeight() = 0;
  virtual void makeKeyAndOrderFront() = 0;
};

}  // namespace brivane
