#include "Machines/Desk/Hardware/MonitorFirmware.h"

#include <algorithm>
#include <numeric>

// Behaviour of real monitors beyond the standard: they answer "not ready" to a read without a
// request, keep a prepared reply until the next request, ignore invalid messages silently, and
// damage replies in the same way every time.

namespace brivane {
namespace {

constexpr std::uint32_t monitorChip = 0x37;
constexpr std::uint32_t hostAddress = 0x51;
constexpr std::uint8_t requestSeed = 0x6E;
constexpr std::uint8_t replySeed = 0x50;
constexpr std::uint8_t replySource = 0x6E;
constexpr std::uint8_t lengthFlag = 0x80;
constexpr std::uint8_t getOpcode = 0x01;
constexpr std::uint8_t replyOpcode = 0x02;
constexpr std::uint8_t setOpcode = 0x03;
constexpr std::uint8_t luminanceCode = 0x10;
constexpr std::uint8_t garbling = 0x5A;

std::uint8_t checksum(std::uint8_t seed, std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), seed, [](std::uint8_t sum, std::uint8_t byte) {
    return static_cast<std::uint8_t>(sum ^ byte);
  });
}

bool isWellFormed(std::span<const std::uint8_t> message) {
  if (message.size() < 3 || message[0] != (lengthFlag | (message.size() - 2))) return false;
  return message.back() == checksum(requestSeed, message.first(message.size() - 1));
}

bool hasPassed(Instant start, Microseconds duration, Instant now) {
  return now < start || now - start >= duration;
}

std::vector<std::uint8_t> nullReply() {
  return {0x6E, 0x80, 0xBE};
}

std::uint8_t highByte(std::uint16_t value) {
  return static_cast<std::uint8_t>(value >> 8U);
}
std::uint8_t lowByte(std::uint16_t value) {
  return static_cast<std::uint8_t>(value & 0xFFU);
}

std::vector<std::uint8_t> reply(std::uint8_t result, std::uint8_t code, std::uint8_t type,
                                std::uint16_t maximum, std::uint16_t current) {
  std::vector<std::uint8_t> bytes = {
      replySource,       lengthFlag | 8,   replyOpcode,       result,          code, type,
      highByte(maximum), lowByte(maximum), highByte(current), lowByte(current)};
  bytes.push_back(checksum(replySeed, bytes));
  return bytes;
}

/// Fills `buffer` with what the host reads when the monitor sends `bytes`.
void deliver(std::vector<std::uint8_t> bytes, MonitorMood mood, std::span<std::uint8_t> buffer) {
  if (mood == MonitorMood::shifted) bytes.erase(bytes.begin());
  if (mood == MonitorMood::doubled) bytes.insert(bytes.begin(), bytes.front());
  bytes.resize(buffer.size());
  std::ranges::copy(bytes, buffer.begin());
  if (mood != MonitorMood::garbled) return;
  for (auto& byte : buffer) byte ^= garbling;
}

}  // namespace

MonitorFirmware::MonitorFirmware(FirmwareDescription firmwareDescription)
    : description(std::move(firmwareDescription)) {}

MonitorState MonitorFirmware::initialState() const {
  MonitorState state;
  state.mood = description.mood;
  state.isAsleep = description.isAsleep;
  state.shownLevel = description.level;
  state.ignoresNextWrite = description.ignoresEveryOtherWrite;
  if (description.supportsLuminance) state.reported[luminanceCode] = description.level;
  for (const auto& feature : description.features) state.reported[feature.code] = feature.level;
  return state;
}

std::int32_t MonitorFirmware::write(MonitorState& state, std::uint32_t chip,
                                    std::uint32_t dataAddress, std::span<const std::uint8_t> bytes,
                                    Instant now) const {
  if (chip != monitorChip || state.isAsleep || state.mood == MonitorMood::busError) {
    return notAcknowledged;
  }
  const bool isListening = state.mood != MonitorMood::silent && !isWaking(state, now);
  if (isListening && dataAddress == hostAddress && isWellFormed(bytes)) receive(state, bytes, now);
  return 0;
}

std::int32_t MonitorFirmware::read(MonitorState& state, std::uint32_t chip,
                                   std::uint32_t dataAddress, std::span<std::uint8_t> bytes,
                                   Instant now) const {
  if (chip != monitorChip || state.isAsleep || state.mood == MonitorMood::busError) {
    return notAcknowledged;
  }
  if (state.mood == MonitorMood::silent || dataAddress != hostAddress) {
    std::ranges::fill(bytes, std::uint8_t{0});
  } else {
    deliver(takeReply(state, now), state.mood, bytes);
  }
  return 0;
}

void MonitorFirmware::receive(MonitorState& state, std::span<const std::uint8_t> message,
                              Instant now) const {
  const auto opcode = message[1];
  if (opcode == setOpcode && message.size() == 6) {
    if (state.mood == MonitorMood::forgetful) state.request.reset();
    receiveSet(state, message[2], static_cast<std::uint16_t>(message[3] << 8U | message[4]));
  } else if (opcode == getOpcode && message.size() == 4) {
    const auto code = message[2];
    // Repeating a request doesn't restart a slow monitor's preparation.
    const bool isPreparing = description.replyMilliseconds > 0 && state.request &&
                             state.request->code == code && !state.request->isAnswered;
    if (isPreparing) return;
    if (state.request) state.previousCode = state.request->code;
    state.request = MonitorRequest{code, now, false};
  }
}

void MonitorFirmware::receiveSet(MonitorState& state, std::uint8_t code,
                                 std::uint16_t value) const {
  const auto largest = maximum(code);
  if (!largest) return;
  const bool isIgnored = state.ignoresNextWrite;
  state.ignoresNextWrite = description.ignoresEveryOtherWrite && !isIgnored;
  if (isIgnored) return;
  const auto level = std::min(value, *largest);
  state.reported[code] = level;
  if (code == luminanceCode) state.shownLevel = level;
  ++state.writeCount;
}

std::vector<std::uint8_t> MonitorFirmware::takeReply(MonitorState& state, Instant now) const {
  const auto preparation = std::chrono::milliseconds(description.replyMilliseconds);
  if (!state.request || isWaking(state, now) || state.mood == MonitorMood::nullReply ||
      !hasPassed(state.request->receivedAt, preparation, now)) {
    return nullReply();
  }
  // Only slow monitors need it; for others, reads leave the state unchanged.
  if (description.replyMilliseconds > 0) state.request->isAnswered = true;
  return replyFor(state,
                  state.mood == MonitorMood::stale ? state.previousCode : state.request->code);
}

std::vector<std::uint8_t> MonitorFirmware::replyFor(const MonitorState& state,
                                                    std::uint8_t code) const {
  const auto largest = maximum(code);
  const auto current = state.reported.find(code);
  if (!largest || current == state.reported.end()) return reply(0x01, code, 0x01, 0xFFFF, 0);
  return reply(0x00, code, 0x00, *largest, current->second);
}

bool MonitorFirmware::isWaking(const MonitorState& state, Instant now) const {
  return state.wokenAt && !hasPassed(*state.wokenAt, fromSeconds(description.wakeSeconds), now);
}

std::optional<std::uint16_t> MonitorFirmware::maximum(std::uint8_t code) const {
  if (code == luminanceCode) {
    return description.supportsLuminance ? std::optional(description.maximum) : std::nullopt;
  }
  const auto feature =
      std::ranges::find(description.features, code, &FirmwareDescription::Feature::code);
  if (feature == description.features.end()) return std::nullopt;
  return feature->maximum;
}

void MonitorFirmware::setLevelByButtons(MonitorState& state, std::uint16_t level) {
  state.shownLevel = level;
  if (const auto reported = state.reported.find(luminanceCode); reported != state.reported.end()) {
    reported->second = level;
  }
}

void MonitorFirmware::fallAsleep(MonitorState& state) {
  state.isAsleep = true;
  state.request.reset();
}

void MonitorFirmware::wake(MonitorState& state, Instant now) const {
  if (!state.isAsleep) return;
  state.isAsleep = false;
  state.wokenAt = now;
  // The panel returns to its initial level, but a get still reports the last set.
  if (description.revertsAfterWake) state.shownLevel = description.level;
}

}  // namespace brivane
