// What a Mac wouldn't forgive, its stand-ins must not forgive either.
#include <Carbon/Carbon.h>
#include <IOKit/IOKitLib.h>
#include <dispatch/dispatch.h>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "Machines/Mac/Runtime/Runtime.h"
#include "Tests/Mac/Machine/MacBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;

using MacStandIns = MacTest;

TEST_F(MacStandIns, NeitherRetainNorReleaseWhatIsNoObject) {
  const std::vector<std::uintptr_t> nothing(4);
  EXPECT_DEATH(CFRelease(nothing.data()), "something that is no object");
  EXPECT_DEATH(CFRetain(nothing.data()), "something that is no object");
  EXPECT_DEATH(CFRelease(CFBundleGetMainBundle()), "something that is no object");
  CFTypeRef const object = fake::makeObject(fake::otherKind);
  CFRelease(object);
  EXPECT_DEATH(CFRelease(object), "after its last release");
}

TEST_F(MacStandIns, CountTheReferencesToConstants) {
  const auto constants = {CFTypeRef{CFSTR("belongs to nobody")}, CFTypeRef{kCFBooleanTrue}};
  for (CFTypeRef constant : constants) {
    EXPECT_DEATH(CFRelease(constant), "a constant was released that nobody had retained");
    CFRetain(constant);
    CFRelease(constant);
  }
}

TEST_F(MacStandIns, GiveTheLayoutOnTheMainThreadOnly) {
  const auto ask = [] { std::thread([] { TISCopyCurrentKeyboardLayoutInputSource(); }).join(); };
  EXPECT_DEATH(ask(), "off the main thread");
}

TEST_F(MacStandIns, TellIteratorsFromEntries) {
  const io_registry_entry_t root = IORegistryGetRootEntry(kIOMainPortDefault);
  EXPECT_DEATH(IOIteratorNext(root), "an entry was used as an iterator");
  io_iterator_t iterator = IO_OBJECT_NULL;
  IORegistryEntryCreateIterator(root, kIOServicePlane, kIORegistryIterateRecursively, &iterator);
  io_name_t name = {};
  EXPECT_DEATH(IORegistryEntryGetName(iterator, name), "an iterator was used as an entry");
  IOObjectRelease(iterator);
  IOObjectRelease(root);
}

TEST_F(MacStandIns, RunTheMainLoopAloneAndOnTheMainThreadAlone) {
  EXPECT_DEATH(std::thread(CFRunLoopRun).join(), "the loop of another thread");
  EXPECT_DEATH(CFRunLoopStop(nullptr), "another loop than the main one");
}

TEST_F(MacStandIns, RunWhatIsWaitedForOnTheThreadThatWaits) {
  struct Seen {
    std::atomic<bool> isOver = false;
    bool wasOver = false;
    std::thread::id thread;
  } seen;
  dispatch_queue_t const queue = dispatch_queue_create("worker", nullptr);
  dispatch_async_f(queue, &seen, [](void* context) {
    auto& note = *static_cast<Seen*>(context);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    note.isOver = true;
  });
  dispatch_sync_f(queue, &seen, [](void* context) {
    auto& note = *static_cast<Seen*>(context);
    note.wasOver = note.isOver;
    note.thread = std::this_thread::get_id();
  });
  EXPECT_TRUE(seen.wasOver) << "once the queue is idle";
  EXPECT_EQ(seen.thread, std::this_thread::get_id());
  dispatch_release(queue);
}

TEST_F(MacStandIns, TakeNoTimerThatIsOtherThanTheProgramMakesThem) {
  const auto make = [](CFOptionFlags flags, CFIndex order, CFIndex version) {
    CFRunLoopTimerContext context = {version, nullptr, nullptr, nullptr, nullptr};
    CFRunLoopTimerCreate(
        kCFAllocatorDefault, 0, 0, flags, order, [](CFRunLoopTimerRef, void*) {}, &context);
  };
  EXPECT_DEATH(make(1, 0, 0), "flags or an order");
  EXPECT_DEATH(make(0, 1, 0), "flags or an order");
  EXPECT_DEATH(make(0, 0, 1), "a context of another kind");
}

TEST_F(MacStandIns, DoNotServeTheMainQueueWhileOneOfItsTasksRunsTheLoop) {
  MacRuntime runtime;
  std::vector<std::string> notes;
  runtime.async([&] {
    runtime.async([&] {
      notes.emplace_back("queued");
      runtime.stop();
    });
    fake::postToMainLoop([&] {
      notes.emplace_back("event");
      CFRunLoopStop(CFRunLoopGetMain());
    });
    CFRunLoopRun();
    notes.emplace_back("nested run over");
  });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("event", "nested run over", "queued"));
}

}  // namespace
}  // namespace brivane
