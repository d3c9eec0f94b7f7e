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

/// The shipping program on a desk in memory and in virtual time, shown by Qt without a screen; so
/// everything in a picture of it is what the program itself put there, and is the same each time.
/// One at a time. Main thread.
class PlayedDesk {
 public:
  /// What is to be seen: the program alone, or the monitors' windows with it, as ./run shows them.
  enum class Shows { program, windows };

  /// `desk` is the text of a desk file (docs/desk.md). The program has run for five seconds.
  explicit PlayedDesk(const std::string& desk, Shows shows = Shows::program);
  ~PlayedDesk();
  PlayedDesk(const PlayedDesk&) = delete;
  PlayedDesk& operator=(const PlayedDesk&) = delete;

  void run(Microseconds time);
  /// Presses keys one after the other, and releases them the other way round.
  void press(std::initializer_list<std::uint16_t> keys);

  /// Presses control, option and the arrow that often, with the pointer on that display, and lets
  /// the HUD go away again.
  void step(std::uint16_t arrow, int times, DisplayID display);

  /// Chooses the command of the menu with that title.
  void choose(const std::string& title);
  /// Clicks a field of the hotkey editor, the upper one being 0.
  void clickField(int number);
  /// A key with control, option and command, as an X server tells the editor of it.
  void typeIntoEditor(std::uint16_t keyCode);

  // What a person sees; each dies with a sentence when it isn't shown.
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

/// What Qt is started with where there is no screen: a large one of its own.
inline constexpr auto noScreen = "offscreen:configfile=Tools/Pictures/screens.json";

/// Gives the Qt application the font of the pictures.
void usePictureFont();

}  // namespace brivane
