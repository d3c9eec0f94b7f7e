#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Carries the settings of the maker's earlier application over, once in the life of a user's
/// settings. Main thread.
struct LegacyDefaultsMigration {
  /// Copies every setting of `legacyDomain` that `target` has no value for, as it is, and remembers
  /// in `target` that this was done; the keys it copied, sorted. `legacy` is null when there are no
  /// such settings.
  static std::vector<std::string> run(UserDefaults& target, DefaultsSuite* legacy,
                                      std::string_view legacyDomain);
};

}  // namespace brivane
