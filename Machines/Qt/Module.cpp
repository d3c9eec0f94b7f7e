#include "Machines/Qt/Module.h"

#include "Machines/Qt/Frame.h"
#include "Machines/Qt/Platform.h"

extern "C" __attribute__((visibility("default"))) brivane::Frame* brivaneOpenQtFrame(
    brivane::QtFrameRequest& request) {
  auto platform = brivane::findQtPlatform();
  if (auto* const problem = std::get_if<std::string>(&platform)) {
    request.problem = std::move(*problem);
    return nullptr;
  }
  return std::make_unique<brivane::QtFrame>(std::get<brivane::QtPlatform>(platform), request)
      .release();
}
