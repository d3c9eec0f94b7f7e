#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneUI/DisplayList.h"

// What a person would read in a picture. Everything is taken from the primitives that are drawn,
// nothing from what the program meant by them.

namespace brivane {

struct PictureReading {
  std::vector<std::string> texts;
  std::vector<std::string> symbols;
  bool hasSpinner = false;
  /// How much of a masked area shows, 0 to 1: the filled part of a bar.
  std::optional<double> fill;
};

PictureReading readPicture(const DisplayList& picture);

/// The whole number that the picture shows beside a symbol, and nothing else; nothing for other
/// pictures.
std::optional<std::int64_t> shownLevel(const PictureReading& reading);

/// In a few words: "level 40, sun.min, bar 46.7%" or "spinner "Connecting" "Halden · …"".
std::string pictureSummary(const DisplayList& picture);

/// Eight hexadecimal digits that change with anything in the picture.
std::string pictureDigest(const DisplayList& picture);

}  // namespace brivane
