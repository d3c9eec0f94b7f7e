#pragma once

// The functions behind @autoreleasepool; no system header declares them.
extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace brivane {

/// An autorelease pool of this thread. The application's own pool is emptied once per user event, a
/// queue's when its thread is idle; objects from timers, tasks and callbacks would pile up until
/// then.
class AutoreleasePool {
 public:
  AutoreleasePool() = default;
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;
  ~AutoreleasePool() { objc_autoreleasePoolPop(pool); }

 private:
  void* const pool = objc_autoreleasePoolPush();
};

}  // namespace brivane
