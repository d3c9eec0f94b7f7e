#pragma once

#include <cstdint>
#include <string>

namespace brivane {

/// A scenario of a random desk and a random day, with expectations that hold for every day. A seed
/// gives the same text on every machine.
std::string randomDay(std::uint64_t seed);

}  // namespace brivane
