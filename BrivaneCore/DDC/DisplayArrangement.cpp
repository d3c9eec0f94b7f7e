#include "BrivaneCore/DDC/DisplayArrangement.h"

#include <algorithm>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

std::string entry(const Screen& screen) {
  const Rect& frame = screen.frame;
  std::string text = std::to_string(screen.number.value_or(0)) + ":";
  text += std::to_string(cutOff(frame.x)) + "," + std::to_string(cutOff(frame.y)) + ",";
  text += std::to_string(cutOff(frame.width)) + "," + std::to_string(cutOff(frame.height));
  return text;
}

}  // namespace

DisplayArrangement DisplayArrangement::current(DisplaySystem& displays) {
  DisplayArrangement arrangement;
  for (const Screen& screen : displays.screens()) arrangement.entries.push_back(entry(screen));
  std::ranges::sort(arrangement.entries);
  return arrangement;
}

}  // namespace brivane
