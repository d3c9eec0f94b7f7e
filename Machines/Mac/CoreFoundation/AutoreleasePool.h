#pragma once

// What compilers make of an @autoreleasepool; no header of the system declares them.
extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace brivane {

/// What is autoreleased on this thread while it exists is released at its end. The application's
/// own pool is emptied once per event of the user's, and a queue's when its thread has nothing left
/// to do: what timers, tasks and callbacks leave would pile up until then.
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
