#include "Machines/Qt/Frame/Frame.h"
#include "Machines/Qt/Toolkit/FrameRequest.h"
#include "Machines/Qt/Toolkit/Platform.h"

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
