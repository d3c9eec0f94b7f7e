#pragma once

#include <filesystem>

#include "Tests/Bench/Table.h"

namespace brivane::bench {

/// Rows about the whole resident program on simulated machines in virtual time; `resources` is
/// where the built bundles lie.
void measureResidentProgram(const FigureTable& table, const std::filesystem::path& resources);

}  // namespace brivane::bench
