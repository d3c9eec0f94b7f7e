#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Migrates the settings of the maker's earlier application, once per user. Main thread.
struct LegacyDefaultsMigration {
  /// Copies every setting of `legacyDomain` that `target` has no value for, marks the migration as
  /// done in `target` and returns the copied keys, sorted. `legacy` is null when there are no such
  /// settings.
  static std::vector<std::string> run(UserDefaults& target, DefaultsSuite* legacy,
                                      std::string_view legacyDomain);
};

}  // namespace brivane
