#pragma once

#include <cstdint>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/Frame/WindowNumbers.h"

namespace brivane {

struct HUDWindowAttributes {
  Rect contentRect;
  std::uint64_t styleMask = borderlessStyle;
  std::uint64_t backing = bufferedBackingStore;
  bool isDeferred = false;
  bool isOpaque = false;
  bool hasClearBackground = true;
  bool hasShadow = true;
  bool ignoresMouseEvents = true;
  bool isReleasedWhenClosed = false;
  bool hidesOnDeactivate = false;
  std::int64_t level = 0;
  std::uint64_t collectionBehavior = 0;
  std::int64_t animationBehavior = 0;
  /// The content view's mask.
  std::uint64_t autoresizingMask = 0;

  bool operator==(const HUDWindowAttributes&) const = default;
};

enum class AnimationTiming { linear, easeIn };

/// Whether a change to a new picture may be animated, as a growing bar or a replaced symbol.
enum class ContentChange { animated, immediate };

/// The HUD's window: never becomes key or main, never activates the program, and begins hidden with
/// an alpha of 1. Main thread.
class HUDWindow {
 public:
  virtual ~HUDWindow() = default;

  /// In global screen coordinates; y upwards.
  virtual Rect frame() = 0;
  /// Doesn't redraw the content.
  virtual void setFrame(const Rect& frame) = 0;

  /// Ordered in, whatever its alpha.
  virtual bool isVisible() = 0;

  /// Sets the alpha at once and ends a running animation, whose completion still runs.
  virtual void setAlpha(double alpha) = 0;

  /// Animates the alpha from its current value to `alpha` and replaces a running animation. A
  /// duration of 0 sets it at once. `completion`, if any, runs as a main-queue task when the
  /// duration is over, even if the animation was ended or replaced.
  virtual void animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                            Task completion) = 0;

  virtual void orderFrontRegardless() = 0;
  virtual void orderOut() = 0;

  /// Replaces the window's view by a new one with `content`.
  virtual void installContentView(const DisplayList& content) = 0;

  /// Shows another picture in the view.
  virtual void updateContent(const DisplayList& content, ContentChange change) = 0;

  /// Has a screen reader say the text, at once and in place of what it is saying. No effect on a
  /// hidden window, nor without a screen reader.
  virtual void announce(const std::string& text) = 0;
};

}  // namespace brivane
