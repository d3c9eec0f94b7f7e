#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>

#include "Machines/Qt/LiveDesk/DeskPicture.h"
#include "Tests/Machines/Qt/QtBench.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Longer than a picture waits for the next change.
constexpr int pictureMilliseconds = 300;

TEST(DeskPicture, TheLogSaysOnceWhyItCannotBeWrittenAndOnceWhereItIs) {
  QtBench& bench = QtBench::shared();
  const TemporaryFolder folder;
  const auto file = folder.path / "desk.png";
  std::filesystem::create_directory(file);
  const auto lines = std::make_shared<std::vector<std::string>>();
  LineLog log(lines);
  DeskPicture picture(file, log);
  QWidget window;
  const auto change = [&] { window.move(window.pos() + QPoint(1, 1)); };

  window.show();
  EXPECT_TRUE(bench.runUntil([&] { return !lines->empty(); }));
  change();
  QTest::qWait(pictureMilliseconds);
  const auto unwritten = HasSubstr("the picture of the desk can't be written to " + file.string());
  EXPECT_THAT(*lines, ElementsAre(unwritten));

  std::filesystem::remove(file);
  change();
  EXPECT_TRUE(bench.runUntil([&] { return lines->size() > 1; }));
  EXPECT_TRUE(std::filesystem::is_regular_file(file));
  change();
  QTest::qWait(pictureMilliseconds);
  EXPECT_THAT(*lines,
              ElementsAre(unwritten, "Brivane: a picture of the desk is kept in " + file.string()));
}

}  // namespace
}  // namespace brivane
