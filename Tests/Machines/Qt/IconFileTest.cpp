// The Mac's icon file as `Tools/draw-pictures.sh` drew it; it is in the tree, so that no build
// needs Qt for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QtEndian>
#include <fstream>
#include <iterator>
#include <map>

#include "BrivaneUI/AppIconArtwork.h"
#include "Machines/Qt/Toolkit/Painter.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

std::string iconFile() {
  std::ifstream stream("Packaging/macOS/Brivane.icns", std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t lengthAt(const std::string& file, std::size_t offset) {
  return qFromBigEndian<quint32>(file.data() + offset + 4);
}

/// The pictures by their names.
std::map<std::string, QImage> pictures(const std::string& file) {
  std::map<std::string, QImage> found;
  std::size_t length = 0;
  for (std::size_t offset = 8; offset < file.size(); offset += length) {
    length = lengthAt(file, offset);
    if (length <= 8 || offset + length > file.size()) return {};
    const auto data = QByteArray::fromStdString(file.substr(offset + 8, length - 8));
    found[file.substr(offset, 4)] = QImage::fromData(data, "PNG");
  }
  return found;
}

TEST(IconFile, SaysItsOwnLength) {
  const std::string file = iconFile();
  ASSERT_GT(file.size(), 8U);
  EXPECT_EQ(file.substr(0, 4), "icns");
  EXPECT_EQ(lengthAt(file, 0), file.size());
}

TEST(IconFile, HasTheArtworkInEverySizeThatAMacAsksFor) {
  QtBench::shared();
  const std::map<std::string, int> widths = {{"ic11", 32},  {"ic12", 64},  {"ic07", 128},
                                             {"ic13", 256}, {"ic08", 256}, {"ic14", 512},
                                             {"ic09", 512}, {"ic10", 1024}};
  const auto found = pictures(iconFile());
  ASSERT_EQ(found.size(), widths.size());
  constexpr double canvas = AppIconArtwork::canvas;
  for (const auto& [name, width] : widths) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(found.contains(name));
    const QImage artwork =
        renderedPicture(AppIconArtwork().body(), {canvas, canvas}, width / canvas);
    EXPECT_EQ(found.at(name).convertToFormat(QImage::Format_ARGB32),
              artwork.convertToFormat(QImage::Format_ARGB32))
        << "Tools/draw-pictures.sh draws it anew";
  }
}

}  // namespace
}  // namespace brivane
