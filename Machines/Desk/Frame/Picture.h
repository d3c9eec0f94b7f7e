#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneUI/DisplayList.h"

// What a person would read in a picture, derived from the drawn primitives alone.

namespace brivane {

struct PictureReading {
  std::vector<std::string> texts;
  std::vector<std::string> symbols;
  bool hasSpinner = false;
  /// The visible part of a masked area, 0 to 1: how far a bar is filled.
  std::optional<double> fill;
};

PictureReading readPicture(const DisplayList& picture);

/// The level, when the picture shows one symbol and one whole number; nothing for other pictures.
std::optional<std::int64_t> shownLevel(const PictureReading& reading);

/// A summary: "level 40, sun.min, bar 46.7%" or "spinner "Connecting" "Halden · …"".
std::string pictureSummary(const DisplayList& picture);

/// Eight hexadecimal digits that change with anything in the picture.
std::string pictureDigest(const DisplayList& picture);

}  // namespace brivane
