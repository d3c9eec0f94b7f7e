#pragma once

#include <cstdint>
#include <string>

namespace brivane {

/// A scenario of a random desk and a random day on it, with the expectations that must hold on any.
/// One seed gives one text, on every machine.
std::string randomDay(std::uint64_t seed);

}  // namespace brivane
