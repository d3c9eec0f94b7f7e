// Prints how many milliseconds the HUD's window takes to draw itself anew and hand the picture to
// the X server, and how many a window of the same size takes that is filled with one colour.
#include <QPainter>
#include <QTest>
#include <chrono>
#include <iostream>
#include <variant>
#include <vector>

#include "BrivaneUI/BrightnessHUDView.h"
#include "BrivaneUI/Strings.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Machines/Qt/Frame/Frame.h"
#include "Machines/Qt/Frame/HUDWindow.h"
#include "Tests/Bench/Table.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane::bench {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int rounds = 301;

/// Qt itself skips what isn't shown.
void awaitExposure(QWidget& widget) {
  widget.show();
  if (!QTest::qWaitForWindowExposed(&widget)) std::cerr << "no window is shown" << std::endl;
}

/// Of one repaint, after `change`.
template <typename Change>
double medianMilliseconds(QWidget& widget, const Change& change) {
  std::vector<double> all;
  for (int round = 0; round < rounds; ++round) {
    change(round);
    const auto start = Clock::now();
    widget.repaint();
    all.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    QCoreApplication::processEvents();
  }
  return median(all);
}

double millisecondsOfHUD(DeskMachine& machine, QtFrame& frame) {
  CatalogColor colors(machine.resources(), machine.log());
  const StringCatalogue strings(machine.resources(), machine.log(), userInterfaceBundle);
  const HUDMetrics metrics = HUDMetrics::standard(strings);
  const auto model = std::make_shared<HUDModel>();
  const BrightnessHUDView view{model, metrics.cornerRadius, metrics,
                               BrightnessHUDView::defaultBoostColor(colors)};
  QtHUDWindow window(
      {.contentRect = {0, 0, metrics.width, metrics.height}, .level = statusWindowLevel},
      machine.runtime(), machine.displays(), frame.application());
  window.orderFrontRegardless();
  awaitExposure(window.widget());
  return medianMilliseconds(window.widget(), [&](int round) {
    model->setState(HUDModel::Level{round % 200});
    window.updateContent(view.body({Appearance::light, colors, strings}), ContentChange::immediate);
  });
}

class PlainWidget : public QWidget {
 public:
  PlainWidget() : QWidget(nullptr, Qt::Tool | Qt::BypassWindowManagerHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    resize(360, 54);
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::darkGreen); }
};

double millisecondsOfPlainWindow() {
  PlainWidget plain;
  awaitExposure(plain);
  return medianMilliseconds(plain, [](int) {});
}

int measure() {
  const TemporaryFolder folder;
  auto desk = openDesk(folder.write("desk.json", R"({"displays": [{"identifier": 1}]})"));
  auto& machine = *std::get<std::unique_ptr<DeskMachine>>(desk);
  auto& queue = dynamic_cast<HostedMainQueue&>(machine.runtime());
  QtFrameRequest request{machine, queue, nullptr, {}};
  QtFrame frame(QtPlatform{"xcb", true}, request);
  std::cout << millisecondsOfHUD(machine, frame) << " " << millisecondsOfPlainWindow() << std::endl;
  return 0;
}

}  // namespace
}  // namespace brivane::bench

int main() {
  return brivane::bench::measure();
}
