#pragma once

#include <QImage>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

#include "BrivaneApp/AppDelegate.h"
#include "Machines/Common/Frame/HostedMainQueue.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Qt/Frame/Frame.h"

namespace brivane {

// Virtual key codes, see `Keyboard`.
inline constexpr std::uint16_t optionKey = 58;
inline constexpr std::uint16_t controlKey = 59;
inline constexpr std::uint16_t downArrow = 125;
inline constexpr std::uint16_t upArrow = 126;

/// The shipping program on a desk in memory and in virtual time, shown by Qt without a screen, so
/// that its pictures are reproducible. One object at a time. Main thread.
class PlayedDesk {
 public:
  /// What Qt shows: the program alone, or also the monitors' windows, like ./run.
  enum class Shows { program, windows };

  /// `desk` is the text of a desk file (docs/desk.md). Runs the program for five seconds.
  explicit PlayedDesk(const std::string& desk, Shows shows = Shows::program);
  ~PlayedDesk();
  PlayedDesk(const PlayedDesk&) = delete;
  PlayedDesk& operator=(const PlayedDesk&) = delete;

  void run(Microseconds time);
  /// Presses keys one after the other, and releases them in reverse order.
  void press(std::initializer_list<std::uint16_t> keys);

  /// Presses control, option and the arrow `times` times with the pointer on the display, then
  /// waits until the HUD has gone.
  void step(std::uint16_t arrow, int times, DisplayID display);

  /// Chooses the command of the menu with that title.
  void choose(const std::string& title);
  /// Clicks a field of the hotkey editor, the upper one being 0.
  void clickField(int number);
  /// Types the key with control, option and command, as an X server's key events.
  void typeIntoEditor(std::uint16_t keyCode);

  // What is shown; a fatal error when it isn't.
  QImage hud();
  QImage menu();
  QImage editor();
  /// All windows.
  QImage screen();
  std::string editorTitle();

 private:
  QWidget& editorWindow();

  struct NoQueue : HostedMainQueue {
    void beginHosting(Task) override {}
    void endHosting() override {}
    HostedTurn runDue() override { return {}; }
  };

  const std::shared_ptr<DeskHardware> hardware;
  DeskMachine machine;
  NoQueue queue;
  std::unique_ptr<QtFrame> frame;
  std::unique_ptr<AppDelegate> delegate;
};

/// The Qt platform with a large virtual screen.
inline constexpr auto noScreen = "offscreen:configfile=Tools/Pictures/screens.json";

/// Gives the Qt application the font of the pictures.
void usePictureFont();

}  // namespace brivane
