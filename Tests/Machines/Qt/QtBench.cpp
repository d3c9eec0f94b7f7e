#include "Tests/Machines/Qt/QtBench.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFont>
#include <cstdlib>
#include <filesystem>

#include "Machines/Desk/LiveDesk/DeskLiveView.h"
#include "Tests/Support/OneUntilTheTestsEnd.h"

namespace brivane {
namespace {

constexpr auto plainDesk = R"({"displays": [{"identifier": 1,
    "frame": {"x": 0, "y": 0, "width": 800, "height": 800}}]})";
/// Of 255.
constexpr int largestDifference = 40;
constexpr double largestMeanDifference = 0.6;

std::unique_ptr<QtBench>& theBench = oneUntilTheTestsEnd<QtBench>();

struct Difference {
  int largest = 0;
  double mean = 0;
};

/// Compares premultiplied pixels, because a transparent pixel's colour is undefined.
Difference difference(const QImage& one, const QImage& other) {
  const QImage left = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const QImage right = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  Difference result;
  double sum = 0;
  for (int y = 0; y < left.height(); ++y) {
    const uchar* const leftLine = left.constScanLine(y);
    const uchar* const rightLine = right.constScanLine(y);
    for (int x = 0; x < 4 * left.width(); ++x) {
      const int gap = std::abs(leftLine[x] - rightLine[x]);
      result.largest = std::max(result.largest, gap);
      sum += gap;
    }
  }
  result.mean = sum / (4.0 * left.width() * left.height());
  return result;
}

}  // namespace

QtBench& QtBench::shared() {
  if (!theBench) theBench.reset(new QtBench({}));
  return *theBench;
}

QtBench& QtBench::renewed(const Setting& setting) {
  drop();
  theBench.reset(new QtBench(setting));
  return *theBench;
}

void QtBench::drop() {
  theBench.reset();
}

QtBench::QtBench(const Setting& setting) {
  const bool isShown = !setting.deskText.empty();
  const auto file = folder.write("desk.json", isShown ? setting.deskText : plainDesk);
  desk = std::get<std::unique_ptr<DeskMachine>>(openDesk(file));
  auto& queue = dynamic_cast<HostedMainQueue&>(desk->runtime());
  QtFrameRequest request{*desk, queue, setting.sessionBus.empty() ? appearanceSwitch : nullptr, {}};
  if (isShown) request.desk = std::make_shared<DeskLiveView>(*desk);
  // The developer's desktop has no influence.
  const auto bus = setting.sessionBus.empty() ? "unix:path=/nobody" : setting.sessionBus;
  ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.c_str(), 1);
  ::setenv("QT_SCALE_FACTOR", std::to_string(setting.pixelsPerPoint).c_str(), 1);
  ::unsetenv("QT_STYLE_OVERRIDE");
  ::unsetenv("QT_QPA_PLATFORMTHEME");
  ownFrame = std::make_unique<QtFrame>(QtPlatform{"offscreen", false}, request);
  // The font of the golden pictures.
  QFont font("DejaVu Sans");
  font.setPixelSize(13);
  QApplication::setFont(font);
}

bool QtBench::runUntil(const std::function<bool()>& holds) {
  QElapsedTimer timer;
  timer.start();
  while (!holds()) {
    if (timer.elapsed() > patienceMilliseconds) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

void QtBench::settle() {
  bool isOver = false;
  runtime().async([this, &isOver] { runtime().async([&isOver] { isOver = true; }); });
  runUntil([&] { return isOver; });
}

void expectGoldenPicture(const std::string& name, const QImage& picture) {
  const auto file = "Tests/Golden/qt/" + name + ".png";
  const char* const regenerate = std::getenv("BRIVANE_REGENERATE");
  if (regenerate != nullptr && std::string(regenerate) == "1") {
    ASSERT_TRUE(picture.save(QString::fromStdString(file))) << "can't write " << file;
  }
  const QImage golden(QString::fromStdString(file));
  ASSERT_FALSE(golden.isNull()) << file << " is missing; BRIVANE_REGENERATE=1 writes it";
  ASSERT_EQ(picture.size(), golden.size()) << file;
  const Difference gap = difference(picture, golden);
  EXPECT_LE(gap.largest, largestDifference) << "BRIVANE_REGENERATE=1 rewrites " << file;
  EXPECT_LE(gap.mean, largestMeanDifference) << "BRIVANE_REGENERATE=1 rewrites " << file;
}

}  // namespace brivane
