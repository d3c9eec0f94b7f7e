// Qt's event loop never runs here: it runs in real time, so pictures would differ from run to run.
// Posted events are delivered explicitly.
#include "Tools/Pictures/PlayedDesk.h"

#include <QApplication>
#include <QFont>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>
#include <variant>

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Machines/Desk/LiveDesk/AppearanceOfDesk.h"
#include "Machines/Desk/LiveDesk/DeskLiveView.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Machines/Qt/Frame/CustomViewWidget.h"
#include "Machines/Qt/Frame/StatusItem.h"
#include "Machines/Qt/LiveDesk/DeskPicture.h"

namespace brivane {
namespace {

/// A virtual screen of a desktop's size.
constexpr auto desktopScreen = "offscreen:configfile=Tools/Pictures/desk-screen.json";
constexpr auto fontFamily = "Inter";
constexpr int fontPixels = 13;

class Silence : public SystemLog {
  void write(std::string_view) override {}
};

DeskDescription described(const std::string& text) {
  auto desk = parseDesk(text, "a picture's desk");
  if (const auto* problem = std::get_if<std::string>(&desk)) fatal(*problem);
  return std::move(std::get<DeskDescription>(desk));
}

/// Repeated for the events that events post.
void deliverWhatQtPosted() {
  for (int turn = 0; turn < 5; ++turn) {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace

void usePictureFont() {
  QFont font(fontFamily);
  font.setPixelSize(fontPixels);
  QApplication::setFont(font);
}

PlayedDesk::PlayedDesk(const std::string& desk, Shows shows)
    : hardware(std::make_shared<DeskHardware>(described(desk))),
      machine(std::make_unique<VirtualRuntime>(), std::make_unique<Silence>(), hardware,
              {false, resourceFolder()}) {
  QtFrameRequest request{machine, queue, std::make_shared<AppearanceOfDesk>(*hardware), {}};
  if (shows == Shows::windows) request.desk = std::make_shared<DeskLiveView>(machine);
  const char* const screens = shows == Shows::windows ? desktopScreen : noScreen;
  frame = std::make_unique<QtFrame>(QtPlatform{screens, false}, request);
  usePictureFont();
  delegate = std::make_unique<AppDelegate>(machine, *frame);
  delegate->applicationDidFinishLaunching();
  run(std::chrono::seconds(5));
}

PlayedDesk::~PlayedDesk() {
  delegate->applicationWillTerminate();
  delegate.reset();
  deliverWhatQtPosted();
}

void PlayedDesk::run(Microseconds time) {
  static_cast<VirtualRuntime&>(machine.runtime()).runFor(time);
  deliverWhatQtPosted();
}

void PlayedDesk::press(std::initializer_list<std::uint16_t> keys) {
  for (auto key = keys.begin(); key != keys.end(); ++key) machine.keyboard().pressKey(*key);
  for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
    machine.keyboard().releaseKey(*key);
  }
}

void PlayedDesk::step(std::uint16_t arrow, int times, DisplayID display) {
  const Rect place = hardware->displays.find(display)->frame;
  hardware->system.movePointer({place.x + place.width / 2, place.y + place.height / 2});
  for (int time = 0; time < times; ++time) {
    press({controlKey, optionKey, arrow});
    run(std::chrono::milliseconds(250));
  }
  run(std::chrono::seconds(5));
}

void PlayedDesk::choose(const std::string& title) {
  auto& menu = frame->statusItem()->menu();
  menu.open({100, 100});
  run(std::chrono::milliseconds(1));
  for (QAction* const action : menu.widget().actions()) {
    if (action->text().toStdString() != title) continue;
    menu.widget().hide();
    action->trigger();
    run(std::chrono::milliseconds(1));
    return;
  }
  fatal("the menu has no " + title);
}

QImage PlayedDesk::menu() {
  auto& menu = frame->statusItem()->menu();
  menu.open({100, 100});
  run(std::chrono::milliseconds(1));
  QImage picture = menu.widget().grab().toImage();
  menu.widget().hide();
  return picture;
}

QImage PlayedDesk::hud() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "Brivane HUD" && window->isVisible()) {
      return window->grab().toImage();
    }
  }
  fatal("no HUD is shown");
}

QWidget& PlayedDesk::editorWindow() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::Window && window->isVisible()) return *window;
  }
  fatal("no editor is shown");
}

QImage PlayedDesk::editor() {
  return editorWindow().grab().toImage();
}

/// A desk in memory has no folder to watch; announcing the appearance updates the windows.
QImage PlayedDesk::screen() {
  hardware->system.setAppearance(hardware->system.appearance());
  run(std::chrono::milliseconds(1));
  return DeskPicture::take();
}

std::string PlayedDesk::editorTitle() {
  return editorWindow().windowTitle().toStdString();
}

void PlayedDesk::clickField(int number) {
  std::vector<CustomViewWidget*> fields;
  for (QObject* const child : editorWindow().children()) {
    if (auto* const field = dynamic_cast<CustomViewWidget*>(child)) fields.push_back(field);
  }
  const QPointF middle = fields.at(static_cast<std::size_t>(number))->rect().center();
  QMouseEvent click(QEvent::MouseButtonPress, middle, middle, Qt::LeftButton, Qt::LeftButton, {});
  QApplication::sendEvent(fields.at(static_cast<std::size_t>(number)), &click);
  deliverWhatQtPosted();
}

void PlayedDesk::typeIntoEditor(std::uint16_t keyCode) {
  const auto code = evdevCodeOfKey(keyCode).value_or(0) + firstXKeyCode;
  const auto modifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  QKeyEvent key(QEvent::KeyPress, Qt::Key_unknown, modifiers, code, 0, 0);
  QApplication::sendEvent(editorWindow().focusWidget(), &key);
  deliverWhatQtPosted();
}

}  // namespace brivane
