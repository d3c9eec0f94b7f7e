#pragma once

#include "BrivaneCore/KeyRelay/RelayKey.h"

namespace brivane {

/// The outcome of taking the program's entries out of the key mapping.
enum class RevertOutcome {
  removed,
  /// The mapping held none of them.
  nothingToRemove,
  /// The mapping could not be read or written.
  failed,
};

/// The system-wide key mapping that sends the brightness keys to relay keys. It outlives the
/// program; other programs' entries in it are left alone. Main thread; every call blocks it.
class KeyMappingStore {
 public:
  virtual ~KeyMappingStore() = default;

  /// Puts the program's entries in force, replacing older ones; whether the system accepted them.
  virtual bool apply(const RelayKey& up, const RelayKey& down) = 0;

  /// Takes the program's entries out, whatever keys they send to.
  virtual RevertOutcome revert() = 0;

  /// Whether all of the program's entries are in force with these keys.
  virtual bool isApplied(const RelayKey& up, const RelayKey& down) = 0;
};

}  // namespace brivane
