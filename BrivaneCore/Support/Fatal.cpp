#include "BrivaneCore/Support/Fatal.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace brivane {
namespace {

// Global: code that meets a programming error has no reference to a log.
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
  // Cleared first: a fatal error in the handler goes to standard error.
  if (auto* const handler = latestHandler.exchange(nullptr)) {
    handler->handle(line);
  } else {
    std::cerr << line << std::endl;
  }
  std::abort();
}

}  // namespace brivane
