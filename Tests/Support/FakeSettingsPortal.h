#pragma once

#include <string>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// The part of a desktop's portal with the light or dark preference; on the session bus as long as
/// this object lives.
class FakeSettingsPortal {
 public:
  static constexpr unsigned noPreference = 0;
  static constexpr unsigned prefersDark = 1;
  static constexpr unsigned prefersLight = 2;

  FakeSettingsPortal(const std::string& sessionBusAddress, unsigned firstScheme);

  /// The user chooses another scheme, which is announced.
  void choose(unsigned newScheme);
  /// Announces a change of an unrelated setting.
  void changeSomethingElse();

  /// For the bus's callbacks.
  unsigned scheme;

 private:
  BusPeer peer;
};

}  // namespace brivane
