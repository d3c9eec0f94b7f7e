#pragma once

#include <memory>

namespace brivane {

/// How a task on a queue finds out whether the object that queued it still exists, without keeping
/// it alive. The object owns an anchor; a task takes a `Watch`. The target touches itself only from
/// the main thread, so a main-queue task whose watch is alive may use the target until it returns;
/// a task on another queue may only ask, and must not touch the target whatever the answer.
///
/// Declare the anchor as the last member, so that it dies first; a destructor that does more than
/// drop its members calls `kill()` before anything else.
class LivenessAnchor {
 public:
  class Watch {
   public:
    /// Any thread.
    bool isAlive() const { return !anchor.expired(); }

   private:
    friend class LivenessAnchor;
    explicit Watch(std::weak_ptr<const int> watched) : anchor(std::move(watched)) {}
    std::weak_ptr<const int> anchor;
  };

  LivenessAnchor() = default;
  LivenessAnchor(const LivenessAnchor&) = delete;
  LivenessAnchor& operator=(const LivenessAnchor&) = delete;
  ~LivenessAnchor() = default;

  Watch watch() const { return Watch(token); }
  void kill() { token.reset(); }

 private:
  std::shared_ptr<const int> token = std::make_shared<const int>(0);
};

}  // namespace brivane
