#pragma once

#include <string>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Plain texts in the user's language.
struct UserNotice {
  std::string title;
  /// Must make sense without the button, which some desktops don't show.
  std::string text;
  std::string button;
};

/// Notices that the desktop shows to the user among those of other programs, and a memory of which
/// were shown, apart from the settings. Main thread; no call blocks.
class UserNotices {
 public:
  virtual ~UserNotices() = default;

  /// Whether `remember` was called with this name, in this run or an earlier one of the user's.
  /// False when that can't be read. A name is a lower-case file name without an extension.
  virtual bool remembers(const std::string& name) = 0;
  /// Does nothing where it can't be stored.
  virtual void remember(const std::string& name) = 0;

  /// Called at most once. `posted` is called once the desktop has taken the notice, never without a
  /// desktop that shows notices. `pressed` is called at most once, when the user presses the button
  /// or the notice itself. Both are main-queue tasks.
  virtual void post(const UserNotice& notice, Task posted, Task pressed) = 0;
};

}  // namespace brivane
