#pragma once

#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// The domain "com.quorrel.brivane", the bundle's own. It is named explicitly, so that the bare
/// executable, whose own domain is another, uses the same settings.
class MacDefaults : public UserDefaults {
 public:
  static constexpr auto domain = "com.quorrel.brivane";

  /// `systemLog` must outlive this.
  explicit MacDefaults(SystemLog& systemLog) : log(systemLog) {}

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

 private:
  void store(std::string_view key, const void* valueOrNull);

  SystemLog& log;
};

/// Other applications' domains.
class MacDefaultsSuite : public DefaultsSuite {
 public:
  std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view domain) override;
};

}  // namespace brivane
