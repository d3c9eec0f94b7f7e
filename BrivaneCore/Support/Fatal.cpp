#include "BrivaneCore/Support/Fatal.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace brivane {
namespace {

// A process has one end, and whoever meets the error has nothing at hand that leads to a log.
std::atomic<FatalErrorHandler*> latestHandler = nullptr;

}  // namespace

FatalErrorHandler::FatalErrorHandler(Handle newHandle)
    : handle(std::move(newHandle)), before(latestHandler.exchange(this)) {}

FatalErrorHandler::~FatalErrorHandler() {
  latestHandler = before;
}

void fatal(std::string_view sentence) {
  std::string line = "Brivane: fatal: " + std::string(sentence);
  std::ranges::replace(line, '\n', ' ');
  // A fatal error of the handler's own is told to nobody else.
  if (auto* const handler = latestHandler.exchange(nullptr)) {
    handler->handle(line);
  } else {
    std::cerr << line << std::endl;
  }
  std::abort();
}

}  // namespace brivane
