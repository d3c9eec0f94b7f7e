#include "BrivaneUI/DisplayList.h"

namespace brivane {

std::string shownText(const DisplayList& picture) {
  std::string lines;
  for (const Primitive& primitive : picture) {
    const auto* const run = std::get_if<TextRun>(&primitive);
    if (run == nullptr) continue;
    if (!lines.empty()) lines += '\n';
    lines += run->text;
  }
  return lines;
}

}  // namespace brivane
