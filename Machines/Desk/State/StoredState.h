#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Machines/Desk/State/StateFile.h"

namespace brivane {

/// The state of one part of the simulated hardware, in memory or in a file that other processes on
/// the desk share. `State` is a value with `==` and two functions: `JsonValue toJson(const State&)`
/// and `void fromJson(const JsonItem&, State&)`.
template <typename State>
class StoredState {
 public:
  /// `folder` is null for state in memory; `fingerprint` is the desk file's section's.
  StoredState(State initialState, StateFolder* folder, const std::string& name,
              std::uint64_t fingerprint)
      : initial(std::move(initialState)), current(initial) {
    if (folder != nullptr) file.emplace(*folder, name, fingerprint);
  }

  State read() {
    if (isOutdated()) update([](const State&) { return true; });
    return current;
  }

  /// Whether another process has changed the state since it was last read or updated here.
  bool isOutdated() const { return file && file->isOutdated(); }

  /// False while the last change could not be written and is in force in this process only.
  bool isSaved() const { return !file || file->isSaved(); }

  /// Runs `operation` on the state, which it may change, under the folder's lock; returns its
  /// result.
  template <typename Operation>
  auto update(const Operation& operation) {
    if (!file) return operation(current);
    State loaded = initial;
    decltype(operation(current)) result{};
    file->access({
        .parse = [&](const JsonItem& item) { fromJson(item, loaded); },
        .startAfresh = [&] { loaded = initial; },
        .change = [&](bool memoryStands) -> std::optional<JsonValue> {
          if (!memoryStands) current = std::move(loaded);
          const State before = current;
          result = operation(current);
          if (current == before) return std::nullopt;
          return toJson(current);
        },
    });
    return result;
  }

 private:
  const State initial;
  State current;
  std::optional<StateFile> file;
};

}  // namespace brivane
