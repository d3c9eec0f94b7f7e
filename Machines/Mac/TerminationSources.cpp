// Dispatch sources also report ignored signals, and the signals must be ignored lest they end the
// process. The destructor installs empty handlers instead, so that a signal found ignored was
// ignored by the parent process.
#include "Machines/Mac/TerminationSources.h"

#include <dispatch/dispatch.h>

#include <csignal>
#include <map>

namespace brivane {

/// By their signals.
struct TerminationSources::Sources {
  std::map<int, dispatch_source_t> all;
};

TerminationSources::TerminationSources(Runtime& machineRuntime, Task signalHandler)
    : runtime(machineRuntime),
      handler(std::move(signalHandler)),
      sources(std::make_unique<Sources>()) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    const bool wasIgnored = ::signal(number, SIG_IGN) == SIG_IGN;
    if (!wasIgnored || number == SIGTERM) listenTo(number);
  }
}

TerminationSources::~TerminationSources() {
  for (const auto& [number, source] : sources->all) {
    ::signal(number, [](int) {});
    dispatch_source_cancel(source);
    dispatch_release(source);
  }
}

void TerminationSources::listenTo(int number) {
  const dispatch_source_t source =
      dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<std::uintptr_t>(number), 0,
                             dispatch_get_main_queue());
  dispatch_set_context(source, this);
  dispatch_source_set_event_handler_f(source, signalled);
  dispatch_resume(source);
  sources->all.emplace(number, source);
}

void TerminationSources::signalled(void* context) {
  const auto* const self = static_cast<TerminationSources*>(context);
  self->runtime.async(self->handler);
}

}  // namespace brivane
