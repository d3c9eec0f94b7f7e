#pragma once

#include <string>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// The part of a desktop's portal that says whether it is light or dark; on the session bus as long
/// as this object is.
class FakeSettingsPortal {
 public:
  static constexpr unsigned noPreference = 0;
  static constexpr unsigned prefersDark = 1;
  static constexpr unsigned prefersLight = 2;

  FakeSettingsPortal(const std::string& sessionBusAddress, unsigned firstScheme);

  /// The user chooses another one, and everybody is told.
  void choose(unsigned newScheme);
  /// Another setting changes that means nothing to anybody here.
  void changeSomethingElse();

  /// For the bus's callbacks.
  unsigned scheme;

 private:
  BusPeer peer;
};

}  // namespace brivane
