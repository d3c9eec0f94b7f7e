#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace brivane {

/// Why a monitor can't be reached, the first to be remedied first.
enum class BusTrouble {
  /// This user may not open the device file.
  notPermitted,
  /// Another program uses the bus.
  busy,
  /// The panel is on stand-by.
  asleep,
  noAnswer,
  /// No bus is known.
  noBus
};

/// The monitors that could not be reached at their latest message. Any thread.
class BusTroubles {
 public:
  /// `monitor` is the name of a connector or output.
  void note(const std::string& monitor, BusTrouble trouble);
  /// For a bus's error number; 0 forgets the trouble.
  void noteResult(const std::string& monitor, std::int32_t error);

  struct Trouble {
    std::string monitor;
    BusTrouble kind = BusTrouble::noAnswer;
  };
  /// The one to be remedied first.
  std::optional<Trouble> first() const;

 private:
  mutable std::mutex mutex;
  std::map<std::string, BusTrouble> troubles;
};

}  // namespace brivane
