// An icon file is "icns", the total length, and for each picture a name of four letters, its length
// with this header, and a PNG file. Numbers are big-endian. The name stands for the picture's width
// in points and its scale; a Mac scales down to other sizes.
#include "Tools/Pictures/IconFile.h"

#include <QBuffer>
#include <array>
#include <cstdint>
#include <map>

#include "BrivaneUI/AppIconArtwork.h"
#include "Machines/Qt/Toolkit/Painter.h"

namespace brivane {
namespace {

struct Size {
  const char* name;
  int pixels;
};

constexpr std::array sizes = {
    Size{"ic11", 32},   // 16 points, twice the pixels
    Size{"ic12", 64},   // 32, twice
    Size{"ic07", 128},  // 128
    Size{"ic13", 256},  // 128, twice
    Size{"ic08", 256},  // 256
    Size{"ic14", 512},  // 256, twice
    Size{"ic09", 512},  // 512
    Size{"ic10", 1024}  // 512, twice
};

constexpr std::size_t headerSize = 8;

std::string header(const std::string& name, std::size_t contentSize) {
  const std::size_t size = headerSize + contentSize;
  std::string bytes = name;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(size >> shift & 0xFF);
  return bytes;
}

}  // namespace

std::string appIconPicture(int pixels) {
  constexpr double canvas = AppIconArtwork::canvas;
  QBuffer buffer;
  renderedPicture(AppIconArtwork().body(), {canvas, canvas}, pixels / canvas)
      .save(&buffer, "PNG", 0);
  return buffer.data().toStdString();
}

std::string appIconFile() {
  std::string pictures;
  for (const auto& [name, pixels] : sizes) {
    const std::string picture = appIconPicture(pixels);
    pictures += header(name, picture.size()) + picture;
  }
  return header("icns", pictures.size()) + pictures;
}

}  // namespace brivane
