#include "Machines/Desk/File/DeskFile.h"

#include "Machines/Common/Files/WholeFile.h"
#include "Machines/Desk/File/DisplaySection.h"
#include "Machines/Desk/File/JsonParser.h"
#include "Machines/Desk/File/SystemSection.h"

namespace brivane {
namespace {

// The largest sensible desk, 64 displays with sampled gamma tables, is much smaller.
constexpr std::size_t largestDeskBytes = 8 << 20;

std::string errorLine(std::string_view fileName, const std::string& error) {
  // A file name may contain a line break.
  return visibleText(fileName) + ": " + error;
}

Point middleOfFirst(const std::vector<DisplayDescription>& displays) {
  if (displays.empty()) return {};
  const auto& frame = displays.front().frame;
  return {frame.x + frame.width / 2, frame.y + frame.height / 2};
}

DeskDescription readDesk(const JsonItem& root) {
  DeskDescription desk;
  auto section = root.section();
  if (const auto displays = section.find("displays")) readDisplays(*displays, desk.displays);
  desk.pointer = middleOfFirst(desk.displays);
  if (const auto pointer = section.find("pointer")) {
    readPoint(*pointer, desk.pointer);
    desk.pointerFingerprint = pointer->fingerprint();
  }
  readSystem(section, desk);
  section.finish();
  return desk;
}

}  // namespace

std::variant<DeskDescription, std::string> parseDesk(std::string_view text,
                                                     std::string_view fileName) {
  if (text.empty()) return errorLine(fileName, "it is empty");
  const auto parsed = parseJson(text);
  if (const auto* error = std::get_if<std::string>(&parsed)) return errorLine(fileName, *error);
  JsonError error;
  auto desk = readDesk(JsonItem(std::get<JsonValue>(parsed), "", error));
  if (error) return errorLine(fileName, *error);
  return desk;
}

std::variant<DeskDescription, std::string> readDeskFile(const std::filesystem::path& file) {
  const auto content = readWholeFile(file, largestDeskBytes);
  if (const auto* text = std::get_if<std::string>(&content)) return parseDesk(*text, file.string());
  return errorLine(file.string(), std::get<FileProblem>(content).reason);
}

}  // namespace brivane
