#pragma once

#include <optional>
#include <string_view>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// The application's own settings domain. A value is visible to other processes of the same user
/// once the call returns, and theirs to this one. Main thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// The value, of whatever kind it was stored; nothing when the key is absent.
  virtual std::optional<PropertyValue> object(std::string_view key) const = 0;

  /// Stores the value. A machine that can't store it now keeps it in force for this process and
  /// says so in its log.
  virtual void set(std::string_view key, const PropertyValue& value) = 0;

  /// Makes the key absent.
  virtual void remove(std::string_view key) = 0;
};

/// Another application's settings, of the same user. Main thread.
class DefaultsSuite {
 public:
  virtual ~DefaultsSuite() = default;

  /// Everything that is stored in the named domain itself; nothing when nothing ever was.
  virtual std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view domain) = 0;
};

}  // namespace brivane
