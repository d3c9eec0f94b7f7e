// What a Mac wouldn't forgive, its stand-ins must not forgive either.
#include <Carbon/Carbon.h>
#include <IOKit/IOKitLib.h>
#include <dispatch/dispatch.h>
#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "Machines/Mac/Runtime.h"
#include "Tests/Machines/Mac/MacBench.h"

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
  CFRelease(CFSTR("belongs to nobody"));
}

TEST_F(MacStandIns, TellTheLayoutOnTheMainThreadAlone) {
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
