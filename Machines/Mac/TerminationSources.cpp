// A source hears of signals that the process ignores, and only ignoring keeps them from ending it.
#include "Machines/Mac/TerminationSources.h"

#include <dispatch/dispatch.h>

#include <csignal>
#include <vector>

namespace brivane {

struct TerminationSources::Sources {
  std::vector<dispatch_source_t> all;
};

TerminationSources::TerminationSources(Runtime& machineRuntime, Task itsHandler)
    : runtime(machineRuntime),
      handler(std::move(itsHandler)),
      sources(std::make_unique<Sources>()) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    ::signal(number, SIG_IGN);
    const dispatch_source_t source =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<std::uintptr_t>(number), 0,
                               dispatch_get_main_queue());
    dispatch_set_context(source, this);
    dispatch_source_set_event_handler_f(source, signalled);
    dispatch_resume(source);
    sources->all.push_back(source);
  }
}

TerminationSources::~TerminationSources() {
  for (const dispatch_source_t source : sources->all) {
    dispatch_source_cancel(source);
    dispatch_release(source);
  }
}

void TerminationSources::signalled(void* context) {
  const auto* const self = static_cast<TerminationSources*>(context);
  self->runtime.async(self->handler);
}

}  // namespace brivane
