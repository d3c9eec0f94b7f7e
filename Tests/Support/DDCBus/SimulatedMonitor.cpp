#include "Tests/Support/DDCBus/SimulatedMonitor.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <map>
#include <numeric>

#include "Tests/Support/ControlFile.h"

namespace brivane {
namespace {

constexpr unsigned monitorChip = 0x37;
constexpr unsigned edidChip = 0x50;
constexpr std::uint8_t monitorAddress = 0x6E;
constexpr std::uint8_t computerAddress = 0x51;
/// Where a reply's checksum starts, instead of the address that the reply is sent to.
constexpr std::uint8_t replyAddress = 0x50;
constexpr std::uint8_t luminance = 0x10;
constexpr auto replyTime = std::chrono::milliseconds(40);
constexpr auto slowReplyTime = std::chrono::hours(1);

const std::map<std::string, int> errorNumbers = {
    {"EBUSY", EBUSY},   {"EINVAL", EINVAL},         {"EIO", EIO},    {"ENODEV", ENODEV},
    {"ENOTTY", ENOTTY}, {"EOPNOTSUPP", EOPNOTSUPP}, {"ENXIO", ENXIO}};

std::uint8_t exclusiveOr(std::uint8_t start, std::span<const std::uint8_t> bytes) {
  return std::accumulate(
      bytes.begin(), bytes.end(), start,
      [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum ^ byte); });
}

bool isWellFormed(std::span<const std::uint8_t> message) {
  return message.size() >= 4 && message[0] == computerAddress &&
         message[1] == (0x80 | (message.size() - 3)) && exclusiveOr(monitorAddress, message) == 0;
}

std::vector<std::uint8_t> withChecksum(std::vector<std::uint8_t> reply) {
  reply.push_back(exclusiveOr(replyAddress, reply));
  return reply;
}

}  // namespace

SimulatedMonitor::SimulatedMonitor(std::string deviceName, std::filesystem::path deviceFolder,
                                   const WireLog& wireLog)
    : name(std::move(deviceName)), folder(std::move(deviceFolder)), log(wireLog) {}

int SimulatedMonitor::refusal(const std::string& step) const {
  std::ifstream mood(folder / "mood");
  for (std::string word; mood >> word;) {
    if (word.starts_with(step + ":")) return errorNumbers.at(word.substr(step.size() + 1));
  }
  return 0;
}

int SimulatedMonitor::write(unsigned chip, std::span<const std::uint8_t> message) {
  if (const int error = wireError(chip)) return error;
  if (chip == edidChip) return message.size() == 1 && message[0] == 0 ? 0 : EIO;
  const bool isGood = isWellFormed(message);
  note("write " + hexText(message) + (isGood ? " ok" : " ignored"));
  lastRequest = std::chrono::steady_clock::now();
  preparedReply.clear();
  if (isGood) obey(message.subspan(2, message.size() - 3));
  return 0;
}

int SimulatedMonitor::read(unsigned chip, std::span<std::uint8_t> reply) {
  if (const int error = wireError(chip)) return error;
  if (chip == edidChip) return readEDID(reply);
  const auto needed = hasMood("slow") ? slowReplyTime : replyTime;
  const bool isReady = std::chrono::steady_clock::now() - lastRequest >= needed;
  const auto message = isReady && !preparedReply.empty() && !hasMood("silent")
                           ? preparedReply
                           : withChecksum({monitorAddress, 0x80});
  std::fill(reply.begin(), reply.end(), std::uint8_t{0});
  std::copy_n(message.begin(), std::min(message.size(), reply.size()), reply.begin());
  note("read " + std::to_string(reply.size()) + " " + hexText(message));
  return 0;
}

int SimulatedMonitor::wireError(unsigned chip) const {
  const bool answers =
      chip == monitorChip || (chip == edidChip && std::filesystem::file_size(folder / "edid") > 0);
  const int error = answers ? refusal("wire") : ENXIO;
  if (error != 0) note("error " + std::to_string(error));
  return error;
}

int SimulatedMonitor::readEDID(std::span<std::uint8_t> reply) const {
  std::ifstream edid(folder / "edid", std::ios::binary);
  std::fill(reply.begin(), reply.end(), std::uint8_t{0xFF});
  edid.read(reinterpret_cast<char*>(reply.data()), static_cast<std::streamsize>(reply.size()));
  note("read EDID " + std::to_string(edid.gcount()));
  return 0;
}

void SimulatedMonitor::obey(std::span<const std::uint8_t> command) {
  if (command.size() == 2 && command[0] == 0x01) prepareReply(command[1]);
  if (command.size() == 4 && command[0] == 0x03 && command[1] == luminance) {
    const int level = command[2] << 8 | command[3];
    writeControlFile(folder / "level", std::to_string(level));
    note("level " + std::to_string(level));
  }
}

void SimulatedMonitor::prepareReply(std::uint8_t code) {
  const bool isKnown = code == luminance;
  const unsigned maximum = isKnown ? number("maximum") : 0;
  const unsigned level = isKnown ? number("level") : 0;
  const auto byte = [](unsigned value) { return static_cast<std::uint8_t>(value); };
  preparedReply = withChecksum({monitorAddress, 0x88, 0x02, byte(isKnown ? 0 : 1), code, 0x00,
                                byte(maximum >> 8), byte(maximum), byte(level >> 8), byte(level)});
}

bool SimulatedMonitor::hasMood(const std::string& word) const {
  std::ifstream mood(folder / "mood");
  for (std::string next; mood >> next;) {
    if (next == word) return true;
  }
  return false;
}

unsigned SimulatedMonitor::number(const char* file) const {
  unsigned value = 0;
  std::ifstream(folder / file) >> value;
  return value;
}

}  // namespace brivane
