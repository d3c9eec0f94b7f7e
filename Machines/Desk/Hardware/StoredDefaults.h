#pragma once

#include <optional>
#include <string>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Desk/Hardware/HardwareState.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// A settings domain over a dictionary that outlives it.
class MemoryDefaults : public UserDefaults {
 public:
  explicit MemoryDefaults(PropertyValue::Dictionary& dictionary) : values(dictionary) {}

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

 private:
  PropertyValue::Dictionary& values;
};

/// A settings domain in the state folder. Its first use ever stores the desk file's settings in it.
class SeededDefaults : public UserDefaults {
 public:
  SeededDefaults(StateFolder& folder, const std::string& domain,
                 const DefaultsDescription& deskSettings);

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

  PropertyValue::Dictionary contents() const { return seeded().contents(); }
  const std::filesystem::path& path() const { return seeded().path(); }

 private:
  JsonFileDefaults& seeded() const;
  void seed() const;

  const PropertyValue::Dictionary initial;
  mutable JsonFileDefaults file;
  mutable StoredState<SeedState> state;
  mutable bool isSeedKnown = false;
};

}  // namespace brivane
