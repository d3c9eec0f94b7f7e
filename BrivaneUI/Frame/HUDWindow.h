#pragma once

#include <cstdint>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/Frame/WindowNumbers.h"

namespace brivane {

/// How a window is made.
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
  /// Of the content view.
  std::uint64_t autoresizingMask = 0;

  bool operator==(const HUDWindowAttributes&) const = default;
};

enum class AnimationTiming { linear, easeIn };

/// Whether a new picture may move in from the old one (a bar that grows, a symbol that is replaced)
/// or stands at once.
enum class ContentChange { animated, immediate };

/// The HUD's window: it never becomes key or main and never activates the program. It begins
/// hidden, with an alpha of 1. Main thread.
class HUDWindow {
 public:
  virtual ~HUDWindow() = default;

  /// In global screen coordinates; y upwards.
  virtual Rect frame() = 0;
  /// Doesn't draw the content anew.
  virtual void setFrame(const Rect& frame) = 0;

  /// Ordered in, whatever its alpha.
  virtual bool isVisible() = 0;

  /// At once. Ends an animation that is running, so that the alpha stays what it is set to; the
  /// animation's completion still runs.
  virtual void setAlpha(double alpha) = 0;

  /// Moves the alpha from where it is to `alpha` and takes the place of an animation that is
  /// running. A duration of 0 sets it at once. `completion`, if any, runs as a main-queue task when
  /// the duration is over, even if the animation was ended or another took its place.
  virtual void animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                            Task completion) = 0;

  virtual void orderFrontRegardless() = 0;
  virtual void orderOut() = 0;

  /// Replaces the view in the window by one that shows `content`.
  virtual void installContentView(const DisplayList& content) = 0;

  /// Shows another picture in the view.
  virtual void updateContent(const DisplayList& content, ContentChange change) = 0;
};

}  // namespace brivane
