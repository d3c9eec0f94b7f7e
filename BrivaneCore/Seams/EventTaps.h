#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace brivane {

/// An event that the tap sees, before any other program does.
struct TapEvent {
  static constexpr std::uint32_t systemDefined = 14;
  static constexpr std::uint32_t disabledByTimeout = 0xFFFFFFFE;
  static constexpr std::uint32_t disabledByUserInput = 0xFFFFFFFF;

  /// What a system-defined event carries. The keyboard's special keys come with subtype 8 and, in
  /// `data1`, the key's type in bits 16 to 31 (2: brightness up, 3: brightness down), its state in
  /// bits 8 to 15 (0x0A down, 0x0B up) and in bit 0 whether the press is a repeat.
  struct SystemDefined {
    std::int16_t subtype = 0;
    std::int64_t data1 = 0;
    std::int64_t data2 = 0;
  };

  std::uint32_t type = systemDefined;
  /// Absent for other types, and when the event can't be converted.
  std::optional<SystemDefined> details;
};

enum class TapVerdict { passThrough, swallow };

/// A tap in the stream of system-defined events. Dropping it takes it out, from within its own
/// handler too.
class EventTap {
 public:
  virtual ~EventTap() = default;

  /// Main. A disabled tap sees nothing, and every event passes.
  virtual void setEnabled(bool enabled) = 0;

  /// Main. False while another program keeps the brightness keys from an enabled tap, on machines
  /// where that can happen.
  virtual bool getsBrightnessKeys() const { return true; }
};

/// The stream of the keyboard's special keys. Main thread.
class EventTaps {
 public:
  /// Called on the main thread for every event, keys' repeats included; the event waits for the
  /// verdict. A handler that keeps it waiting too long gets its tap disabled by the system and is
  /// then called with type `disabledByTimeout`, whose verdict is ignored.
  using Handler = std::function<TapVerdict(const TapEvent& event)>;

  virtual ~EventTaps() = default;

  /// A tap at the head of the stream, connected to the main thread; null when the system refuses,
  /// as it does without the Accessibility grant. Whether it sees anything before
  /// `setEnabled(true)` is undefined.
  virtual std::unique_ptr<EventTap> createTap(Handler handler) = 0;
};

}  // namespace brivane
