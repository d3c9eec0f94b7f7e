// Neither XCB nor sd-bus may be used by one thread while another waits in it. So the queue waits
// once, with `poll`, and the main thread starts the next wait after it has read everything.
#include "Machines/Linux/System/DescriptorWatch.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

FileDescriptor makeEnd() {
  FileDescriptor made(::eventfd(0, EFD_CLOEXEC));
  if (!made.isOpen()) fatal("no descriptor could be made to end a wait");
  return made;
}

/// Waits for either; false for `end`.
bool becomesReadable(int descriptor, int end) {
  std::array<pollfd, 2> watched = {{{descriptor, POLLIN, 0}, {end, POLLIN, 0}}};
  while (::poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) {
  }
  return watched[1].revents == 0;
}

}  // namespace

DescriptorWatch::DescriptorWatch(Runtime& machineRuntime, const std::string& label,
                                 int watchedDescriptor, Handler readHandler)
    : runtime(machineRuntime),
      descriptor(watchedDescriptor),
      handler(std::move(readHandler)),
      end(makeEnd()),
      queue(machineRuntime.makeSerialQueue(label, QueueQuality::userInitiated)) {
  waitOnce();
}

DescriptorWatch::~DescriptorWatch() {
  anchor.kill();
  ::eventfd_write(end.get(), 1);
  queue->sync([] {});
}

void DescriptorWatch::waitOnce() {
  queue->async([this, watch = anchor.watch()] {
    if (!becomesReadable(descriptor, end.get())) return;
    runtime.async([this, watch] {
      if (watch.isAlive() && handler()) waitOnce();
    });
  });
}

}  // namespace brivane
