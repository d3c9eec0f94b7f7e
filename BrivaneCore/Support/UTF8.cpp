#include "BrivaneCore/Support/UTF8.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace brivane {
namespace {

/// One row of the table of well-formed sequences: which lead bytes, what their second byte may be,
/// and how many bytes the sequence has. Every further byte is 0x80 to 0xBF.
struct SequenceForm {
  unsigned char leadFirst;
  unsigned char leadLast;
  unsigned char secondFirst;
  unsigned char secondLast;
  std::size_t length;
};

constexpr std::array<SequenceForm, 9> sequenceForms = {{
    {0x00, 0x7F, 0x00, 0x00, 1},
    {0xC2, 0xDF, 0x80, 0xBF, 2},
    {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4},
    {0xF4, 0xF4, 0x80, 0x8F, 4},
}};

bool isWithin(char byte, unsigned char first, unsigned char last) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= first && value <= last;
}

// The length of the sequence that the bytes begin with; 0 when they begin with none.
std::size_t sequenceLength(std::string_view bytes) {
  const auto form = std::ranges::find_if(sequenceForms, [bytes](const SequenceForm& row) {
    return isWithin(bytes.front(), row.leadFirst, row.leadLast);
  });
  if (form == sequenceForms.end() || bytes.size() < form->length) return 0;
  if (form->length > 1 && !isWithin(bytes[1], form->secondFirst, form->secondLast)) return 0;
  for (std::size_t index = 2; index < form->length; ++index) {
    if (!isWithin(bytes[index], 0x80, 0xBF)) return 0;
  }
  return form->length;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto length = sequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace brivane
