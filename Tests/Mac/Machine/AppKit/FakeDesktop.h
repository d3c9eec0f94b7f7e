#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Geometry.h"

namespace brivane {

/// What an event of CoreGraphics is to AppKit.
struct FakeEventContent {
  NSEventType type = NSEventTypeSystemDefined;
  short subtype = 0;
  NSInteger data1 = 0;
  NSInteger data2 = 0;
};

/// What of the Mac's window system the fake AppKit needs: one for the process, empty at first, and
/// the user's hands on it. Main thread.
class FakeDesktop {
 public:
  static FakeDesktop& shared();

  /// Nothing that the program has made may be left.
  void reset();

  /// The main run loop, and the time that animations take.
  struct MainLoop {
    std::function<void()> run;
    std::function<void()> stop;
    std::function<void(Task)> async;
    std::function<void(double seconds, Task)> after;
  };
  MainLoop loop;

  /// What was asked for of which nothing else remains, in order.
  std::vector<std::string> notes;
  std::vector<std::string> takeNotes();
  /// How the program became an application, in order.
  std::vector<std::string> start;

  /// Whether the program is the active application; another one is, at first.
  bool isActive = false;
  bool isHidden = false;
  /// What becomes of a program's wish to be active: macOS 14 and later grant it later, or never.
  enum class Activation { atOnce, later, never };
  Activation activation = Activation::atOnce;
  void becomeActive();
  /// The Space that the user looks at, and whether it is that of another program's window alone.
  int activeSpace = 1;
  bool isActiveSpaceFullScreen = false;

  bool isDark = false;
  /// AppKit announces changes of the appearance that change nothing we see, too.
  void setDark(bool dark);

  NSMutableArray<NSScreen*>* screens;
  NSScreen* mainScreen = nil;
  NSPoint pointer{};
  NSEventModifierFlags modifiers = 0;
  NSMutableArray<NSRunningApplication*>* runningApplications;

  /// Nothing: the event can't be converted.
  std::function<std::optional<FakeEventContent>(CGEventRef)> contentOfEvent;

  /// As the status bar has them.
  NSMutableArray<NSStatusItem*>* statusItems;
  /// What was set of the status item, in order: the menu bar is drawn anew for each image.
  std::vector<std::string> statusItemChanges;
  /// Names of the status items that the user has put somewhere, which the system keeps.
  std::set<std::string> storedPositions;
  /// The process's end takes the status items that are left to it. Nobody else may still keep one.
  void endProcess();
  /// Those that exist, shown or not; weakly.
  std::vector<NSWindow * __weak> windows;
  NSWindow* windowTitled(const std::string& title);
  NSMenu* __weak openMenu = nil;
  /// Hears when a menu begins or ends to follow the mouse.
  std::function<void(bool isTracking)> menuTracks;
  /// What was changed in the open menu, in order: AppKit lays it out anew each time.
  std::vector<std::string> menuChanges;
  /// Its line that the arrow keys have reached.
  NSMenuItem* __weak highlighted = nil;
  /// Where a menu's titles begin, and how far a column for ticks moves them.
  double titleEdge = 14;
  double tickColumnWidth = 10;

  /// Whether a screen reader is in the middle of a sentence, as after each key.
  bool isTalking = false;
  /// What it has said of what the program asked it to, in order.
  std::vector<std::string> heard;

  // The user's hands.
  void open(NSMenu* menu);
  void close();
  /// In the open menu.
  void choose(const std::string& title);
  /// Nothing here keeps the slider, as nothing in AppKit does while it follows the mouse.
  void drag(NSSlider* __weak const& slider, double value);
  /// In the open menu: to the next line that can be chosen.
  void pressArrowDown();
  /// The mouse's button goes down on a slider, and up: it is followed meanwhile, whatever happens
  /// to the menu.
  void hold();
  void letGo();
  /// Gives the application and the window the keys.
  void click(NSView* view, NSWindow* window);
  /// A key that is pressed while the window is to have the keys: it is lost when the window hasn't.
  void press(NSWindow* window, std::uint16_t keyCode, NSEventModifierFlags flags);
  NSEvent* keyDown(std::uint16_t keyCode, NSEventModifierFlags flags);
  /// As with a slider, nothing here keeps the button.
  void press(NSButton* __weak const& button);

  // The loops

  /// For the outermost loop, when nothing follows the mouse.
  std::vector<void (^)(void)> blocks;
  void performBlocks();
  bool tracksTheMouse() const;
  /// At once, or as soon as nothing follows the mouse.
  void performInDefaultMode(const Task& task);
  void returnToDefaultMode();
  std::vector<Task> waitingForDefaultMode;
  bool isHolding = false;
  /// The open menu is to close as soon as whoever asked for that has returned.
  bool isCancelled = false;
  void endCancelledTracking();

  // Drawing

  /// One line for each thing drawn since the last time.
  std::vector<std::string> drawn;
  std::vector<std::string> drawnBy(NSView* view);
};

/// All views below, itself first.
std::vector<NSView*> viewsBelow(NSView* view);
NSArray<NSMenuItem*>* itemsOf(NSMenu* menu);
/// Where the titles of all its lines begin.
double titleEdgeOf(NSMenu* menu);
NSScreen* makeFakeScreen(id number, const Rect& frame, const std::string& name, double headroom);
NSRunningApplication* makeFakeApplication(const std::string& bundleIdentifier, int process);
/// "label", "label*0.5", "rgb(1 0.5 0)*0.7".
std::string textOfColor(NSColor* color);
std::string textOfFont(NSFont* font);

/// How the alpha was last asked to move.
struct FakeFade {
  double alpha = 1;
  double seconds = 0;
  std::string timing;
};

}  // namespace brivane

@interface NSWindow (FakeAppKit)
/// The user clicks the close button.
- (void)fakeUserCloses;
/// The user turns to another window.
- (void)fakeResignsKey;
- (brivane::FakeFade)fakeLastFade;
- (NSWindowStyleMask)fakeStyleMask;
- (BOOL)fakeIsKey;
/// On the Space that the user looks at, in front of other applications' windows, and not
/// transparent.
- (BOOL)fakeIsSeen;
- (void)fakeApplicationIsActive;
- (void)fakeApplicationIsHidden:(BOOL)isHidden;
- (BOOL)fakeIsCentered;
- (BOOL)fakeDisplayedLastFrame;
@end

@interface NSView (FakeAppKit)
- (NSArray<NSView*>*)fakeSubviews;
/// What is left and right of the visible part.
- (CGFloat)fakeInset;
/// Nil for what a screen reader doesn't see.
- (NSString*)fakeRole;
@end

@interface NSProgressIndicator (FakeAppKit)
- (BOOL)fakeIsTurning;
@end

@interface NSMenuItem (FakeAppKit)
- (NSString*)fakeKeyEquivalent;
- (BOOL)fakeIsSeparator;
@end

@interface NSImage (FakeAppKit)
/// Draws it for a screen with so many pixels to a point; the lines of what it draws, in pixels, are
/// in `drawn`.
- (void)fakeDrawAtScale:(double)pixelsPerPoint;
@end
