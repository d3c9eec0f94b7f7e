#pragma once

#include <filesystem>

#include "Tests/Bench/Table.h"

namespace brivane::bench {

/// Rows about the built resident program on an X server with a tray, inside "ddc-bus-host", next to
/// an empty Qt program in the same tray. `programs` is the folder of both.
void measureVisibleProgram(const FigureTable& table, const std::filesystem::path& programs);

}  // namespace brivane::bench
