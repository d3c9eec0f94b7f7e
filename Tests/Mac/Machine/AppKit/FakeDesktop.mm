// The application, menus, screens and the user's hands.
#include "Tests/Mac/Machine/AppKit/FakeDesktop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/ObjC/Classes.h"
#include "Tests/Support/VirtualKeys.h"

extern "C" void objc_msgSend(void);

using brivane::FakeDesktop;
using brivane::stringOf;
using brivane::textOf;

namespace {

void send(SEL action, id target, id sender) {
  reinterpret_cast<void (*)(id, SEL, id)>(objc_msgSend)(target, action, sender);
}

void note(const std::string& line) {
  FakeDesktop::shared().notes.push_back(line);
}

}  // namespace

// Events

@interface NSEvent () {
 @public
  NSEventType ownType;
  NSEventModifierFlags ownFlags;
  unsigned short ownKeyCode;
  short ownSubtype;
  NSInteger ownData1;
  NSInteger ownData2;
}
@end

@implementation NSEvent
+ (NSPoint)mouseLocation {
  return FakeDesktop::shared().pointer;
}
/// Its first button alone is used.
+ (NSUInteger)pressedMouseButtons {
  return FakeDesktop::shared().isHolding ? 1 : 0;
}
+ (NSEventModifierFlags)modifierFlags {
  return FakeDesktop::shared().modifiers;
}
+ (NSEvent*)eventWithCGEvent:(CGEventRef)source {
  const auto content = FakeDesktop::shared().contentOfEvent(source);
  if (!content) return nil;
  NSEvent* const event = [NSEvent new];
  event->ownType = content->type;
  event->ownSubtype = content->subtype;
  event->ownData1 = content->data1;
  event->ownData2 = content->data2;
  return event;
}
+ (NSEvent*)otherEventWithType:(NSEventType)type
                      location:(NSPoint)location
                 modifierFlags:(NSEventModifierFlags)flags
                     timestamp:(NSTimeInterval)time
                  windowNumber:(NSInteger)windowNumber
                       context:(NSGraphicsContext*)context
                       subtype:(short)subtype
                         data1:(NSInteger)data1
                         data2:(NSInteger)data2 {
  // AppKit raises an exception: those of the mouse and the keys are made by other methods.
  constexpr NSUInteger firstOther = 13;
  constexpr NSUInteger lastOther = 16;
  if (type < firstOther || type > lastOther) {
    brivane::objc::fail("such an event is made in another way");
  }
  NSEvent* const event = [NSEvent new];
  event->ownType = type;
  return event;
}
- (NSEventType)type {
  return ownType;
}
- (NSEventModifierFlags)modifierFlags {
  return ownFlags;
}
- (unsigned short)keyCode {
  if (ownType != NSEventTypeKeyDown) brivane::objc::fail("no key event has no key");
  return ownKeyCode;
}
- (short)subtype {
  [self requireFields];
  return ownSubtype;
}
- (NSInteger)data1 {
  [self requireFields];
  return ownData1;
}
- (NSInteger)data2 {
  [self requireFields];
  return ownData2;
}
/// AppKit raises an exception.
- (void)requireFields {
  if (ownType != NSEventTypeSystemDefined) brivane::objc::fail("the event has no such field");
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// The run loop

@implementation NSRunLoop
+ (NSRunLoop*)mainRunLoop {
  static NSRunLoop* const loop = [NSRunLoop new];
  return loop;
}
- (void)performBlock:(void (^)(void))block {
  FakeDesktop::shared().blocks.push_back(block);
  FakeDesktop::shared().loop.stop();
}
@end

// The application

const NSAppearanceName NSAppearanceNameAqua = @"NSAppearanceNameAqua";
const NSAppearanceName NSAppearanceNameDarkAqua = @"NSAppearanceNameDarkAqua";
const NSNotificationName NSApplicationDidChangeScreenParametersNotification =
    @"NSApplicationDidChangeScreenParametersNotification";

@implementation NSAppearance
- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)names {
  for (NSAppearanceName name in names) {
    if ([name isEqualToString:NSAppearanceNameDarkAqua] == FakeDesktop::shared().isDark) {
      return name;
    }
  }
  return nil;
}
@end

@interface NSApplication () {
 @public
  BOOL isStopped;
  BOOL isToldOfStop;
  BOOL isInLoop;
}
@end

@implementation NSApplication {
  __weak id<NSApplicationDelegate> ownDelegate;
  NSMenu* ownMainMenu;
}
+ (__kindof NSApplication*)sharedApplication {
  static NSApplication* const application = [NSApplication new];
  auto& start = FakeDesktop::shared().start;
  if (start.empty()) start.emplace_back("shared application");
  return application;
}
- (id<NSApplicationDelegate>)delegate {
  return ownDelegate;
}
- (void)setDelegate:(id<NSApplicationDelegate>)newDelegate {
  ownDelegate = newDelegate;
  if (newDelegate != nil) FakeDesktop::shared().start.emplace_back("delegate");
}
- (NSAppearance*)effectiveAppearance {
  return [NSAppearance new];
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
  note("policy " + std::to_string(policy));
  return YES;
}
- (void)activateIgnoringOtherApps:(BOOL)ignoring {
  note(ignoring ? "activate, whatever is in front" : "activate");
  FakeDesktop& desktop = FakeDesktop::shared();
  if (desktop.activation == FakeDesktop::Activation::atOnce) desktop.becomeActive();
  if (desktop.activation != FakeDesktop::Activation::later) return;
  desktop.loop.after(0.05, [] { FakeDesktop::shared().becomeActive(); });
}
/// With all windows that don't refuse; the application before is active then.
- (void)hide:(id)sender {
  note("hide");
  FakeDesktop& desktop = FakeDesktop::shared();
  desktop.isHidden = true;
  desktop.isActive = false;
  for (NSWindow* const window : desktop.windows) [window fakeApplicationIsHidden:YES];
}
/// Brings back what was there when the application was hidden, closed since then or not.
- (void)unhideWithoutActivation {
  FakeDesktop& desktop = FakeDesktop::shared();
  desktop.isHidden = false;
  for (NSWindow* const window : desktop.windows) [window fakeApplicationIsHidden:NO];
}
- (NSMenu*)mainMenu {
  return ownMainMenu;
}
- (void)setMainMenu:(NSMenu*)menu {
  ownMainMenu = menu;
}
/// The loop goes on until `stop:`, and notices that at the next event.
- (void)run {
  FakeDesktop::shared().start.emplace_back("run");
  isStopped = NO;
  isToldOfStop = NO;
  FakeDesktop::MainLoop& loop = FakeDesktop::shared().loop;
  loop.async([self] {
    @autoreleasepool {
      const id<NSApplicationDelegate> listener = self.delegate;
      if ([listener respondsToSelector:@selector(applicationDidFinishLaunching:)]) {
        [listener applicationDidFinishLaunching:[NSNotification new]];
      }
    }
  });
  do {
    @autoreleasepool {
      isInLoop = YES;
      loop.run();
      isInLoop = NO;
      FakeDesktop::shared().performBlocks();
    }
  } while (!isToldOfStop);
}
- (void)stop:(id)sender {
  isStopped = YES;
}
- (void)postEvent:(NSEvent*)event atStart:(BOOL)isFirst {
  if (event == nil) brivane::objc::fail("no event was posted");
  note("post " + std::to_string(event.type) + (isFirst ? " first" : ""));
  // Whoever follows the mouse takes all events, and drops those that it doesn't know.
  if (!isStopped || FakeDesktop::shared().tracksTheMouse()) return;
  isToldOfStop = YES;
  if (isInLoop) FakeDesktop::shared().loop.stop();
}
/// The process doesn't end here, so that a test can go on.
- (void)terminate:(id)sender {
  const id<NSApplicationDelegate> listener = self.delegate;
  if ([listener respondsToSelector:@selector(applicationWillTerminate:)]) {
    [listener applicationWillTerminate:[NSNotification new]];
  }
  isToldOfStop = YES;
  FakeDesktop::shared().loop.stop();
}
@end

void NSBeep() {
  note("beep");
}

// The screen reader

const NSAccessibilityNotificationName NSAccessibilityAnnouncementRequestedNotification =
    @"AXAnnouncementRequested";
const NSAccessibilityNotificationUserInfoKey NSAccessibilityAnnouncementKey = @"AXAnnouncementKey";
const NSAccessibilityNotificationUserInfoKey NSAccessibilityPriorityKey = @"AXPriorityKey";

namespace {

bool isAnyWindowShown() {
  return std::ranges::any_of(FakeDesktop::shared().windows,
                             [](NSWindow* window) { return window.visible; });
}

}  // namespace

/// Says nothing for any element but the application, nor for an application without a window; and
/// what isn't urgent is lost while it says something else.
void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* userInfo) {
  FakeDesktop& desktop = FakeDesktop::shared();
  NSString* const text = userInfo[NSAccessibilityAnnouncementKey];
  NSNumber* const priority = userInfo[NSAccessibilityPriorityKey];
  if (![notification isEqualToString:NSAccessibilityAnnouncementRequestedNotification]) return;
  if (element != NSApplication.sharedApplication || text == nil || !isAnyWindowShown()) return;
  if (desktop.isTalking && priority.doubleValue < static_cast<double>(NSAccessibilityPriorityHigh))
    return;
  desktop.heard.push_back(textOf(text));
}

// Screens and other applications

const NSNotificationName NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
const NSNotificationName NSWorkspaceScreensDidWakeNotification =
    @"NSWorkspaceScreensDidWakeNotification";

@interface NSScreen () {
 @public
  NSRect ownFrame;
  NSDictionary* description;
  NSString* name;
  CGFloat headroom;
}
@end

@implementation NSScreen
+ (NSArray<NSScreen*>*)screens {
  return [FakeDesktop::shared().screens copy];
}
+ (NSScreen*)mainScreen {
  return FakeDesktop::shared().mainScreen;
}
- (NSRect)frame {
  return ownFrame;
}
- (NSDictionary<NSDeviceDescriptionKey, id>*)deviceDescription {
  return description;
}
- (NSString*)localizedName {
  return name;
}
- (CGFloat)maximumPotentialExtendedDynamicRangeColorComponentValue {
  return headroom;
}
@end

@implementation NSWorkspace {
  NSNotificationCenter* center;
}
+ (NSWorkspace*)sharedWorkspace {
  static NSWorkspace* const workspace = [NSWorkspace new];
  return workspace;
}
- (NSNotificationCenter*)notificationCenter {
  if (center == nil) center = [NSNotificationCenter new];
  return center;
}
- (BOOL)openURL:(NSURL*)url {
  note("open " + textOf(url.absoluteString));
  return YES;
}
@end

@interface NSRunningApplication () {
 @public
  NSString* identifier;
  int process;
}
@end

@implementation NSRunningApplication
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)wanted {
  NSMutableArray<NSRunningApplication*>* const found = [NSMutableArray array];
  for (NSRunningApplication* application in FakeDesktop::shared().runningApplications) {
    if ([application->identifier isEqualToString:wanted]) [found addObject:application];
  }
  return found;
}
- (int)processIdentifier {
  return process;
}
@end

// Menus

namespace {

bool isPerformingLater = false;

std::string nameOf(NSMenuItem* item) {
  return item.view == nil ? textOf(item.title) : "row";
}

}  // namespace

@implementation NSObject (NSDelayedPerforming)
/// In the loop's default mode: not while a menu is open.
- (void)performSelector:(SEL)selector withObject:(id)object afterDelay:(double)seconds {
  const brivane::Task perform = [self, selector, object] {
    @autoreleasepool {
      isPerformingLater = true;
      send(selector, self, object);
      isPerformingLater = false;
    }
  };
  FakeDesktop::shared().loop.after(
      seconds, [perform] { FakeDesktop::shared().performInDefaultMode(perform); });
}
@end

@interface NSMenu () {
 @public
  NSMutableArray<NSMenuItem*>* items;
}
- (void)noteChange:(const std::string&)change;
@end

@interface NSMenuItem () {
 @public
  NSString* key;
  SEL action;
  BOOL isSeparator;
  NSString* ownTitle;
  NSAttributedString* ownAttributedTitle;
  NSControlStateValue ownState;
  NSMenu* __unsafe_unretained menu;
}
@end

@implementation NSMenu
@synthesize delegate, autoenablesItems;
- (instancetype)initWithTitle:(NSString*)title {
  if ((self = [super init])) {
    items = [NSMutableArray array];
    self.autoenablesItems = YES;
  }
  return self;
}
- (void)dealloc {
  for (NSMenuItem* item in items) item->menu = nil;
}
- (void)addItem:(NSMenuItem*)item {
  [self insertItem:item atIndex:static_cast<NSInteger>(items.count)];
}
/// AppKit raises an exception for an item that is in a menu, and for a place that isn't.
- (void)insertItem:(NSMenuItem*)item atIndex:(NSInteger)index {
  if (item->menu != nil) brivane::objc::fail("an item is added to a second menu");
  if (index < 0 || index > static_cast<NSInteger>(items.count)) {
    brivane::objc::fail("an item is inserted where the menu has no place");
  }
  [items insertObject:item atIndex:static_cast<NSUInteger>(index)];
  item->menu = self;
  [self noteChange:"add " + nameOf(item)];
}
/// A highlight doesn't come back.
- (void)removeItemAtIndex:(NSInteger)index {
  NSMenuItem* const item = items[static_cast<NSUInteger>(index)];
  [self noteChange:"remove " + nameOf(item)];
  if (FakeDesktop::shared().highlighted == item) FakeDesktop::shared().highlighted = nil;
  item->menu = nil;
  [items removeObject:item];
}
/// As wide as its widest title, with what is around it.
- (NSSize)size {
  CGFloat widest = 0;
  for (NSMenuItem* item in items) {
    widest = std::max(widest, 7.0 * static_cast<CGFloat>(item.title.length));
  }
  return NSMakeSize(brivane::titleEdgeOf(self) + widest + 14,
                    22 * static_cast<CGFloat>(items.count));
}
- (void)noteChange:(const std::string&)change {
  if (self == FakeDesktop::shared().openMenu) FakeDesktop::shared().menuChanges.push_back(change);
}
- (BOOL)popUpMenuPositioningItem:(NSMenuItem*)item
                      atLocation:(NSPoint)location
                          inView:(NSView*)contentView {
  if (!isPerformingLater) brivane::objc::fail("a menu keeps whoever has it pop up until it closes");
  note("menu at " + std::to_string(std::lround(location.x)) + "," +
       std::to_string(std::lround(location.y)) + (item == nil ? "" : ", of one of its items") +
       (contentView == nil ? "" : ", of a view"));
  FakeDesktop::shared().open(self);
  return NO;
}
- (void)cancelTrackingWithoutAnimation {
  note("tracking ends at once");
  FakeDesktop& desktop = FakeDesktop::shared();
  if (desktop.openMenu != self) return;
  desktop.isCancelled = true;
  desktop.loop.async([] { FakeDesktop::shared().endCancelledTracking(); });
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSMenuItem
@synthesize enabled, target, view, submenu, tag;
+ (NSMenuItem*)separatorItem {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:@"" action:nil keyEquivalent:@""];
  item->isSeparator = YES;
  return item;
}
- (instancetype)initWithTitle:(NSString*)itemTitle
                       action:(SEL)itemAction
                keyEquivalent:(NSString*)keyEquivalent {
  if ((self = [super init])) {
    self.title = itemTitle;
    self.enabled = YES;
    action = itemAction;
    key = keyEquivalent;
  }
  return self;
}
- (NSString*)title {
  return ownTitle;
}
- (void)setTitle:(NSString*)title {
  ownTitle = [title copy];
  [menu noteChange:"title of " + nameOf(self)];
}
- (NSAttributedString*)attributedTitle {
  return ownAttributedTitle;
}
- (void)setAttributedTitle:(NSAttributedString*)title {
  ownAttributedTitle = [title copy];
  [menu noteChange:"look of " + nameOf(self)];
}
- (NSControlStateValue)state {
  return ownState;
}
- (void)setState:(NSControlStateValue)state {
  ownState = state;
  [menu noteChange:"tick of " + nameOf(self)];
}
- (NSString*)fakeKeyEquivalent {
  return key;
}
- (BOOL)fakeIsSeparator {
  return isSeparator;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@interface NSStatusItem () {
 @public
  NSStatusBarButton* ownButton;
  NSString* ownName;
}
@end

@implementation NSStatusBarButton
- (void)setImage:(NSImage*)image {
  FakeDesktop::shared().statusItemChanges.emplace_back("image");
  [super setImage:image];
}
- (void)setToolTip:(NSString*)toolTip {
  FakeDesktop::shared().statusItemChanges.emplace_back("tool tip");
  [super setToolTip:toolTip];
}
@end

@implementation NSStatusItem
@synthesize menu;
- (NSString*)autosaveName {
  return ownName;
}
- (void)setAutosaveName:(NSString*)name {
  ownName = name == nil ? @"Item-0" : name;
}
- (NSStatusBarButton*)button {
  return ownButton;
}
@end

@implementation NSStatusBar
+ (NSStatusBar*)systemStatusBar {
  static NSStatusBar* const bar = [NSStatusBar new];
  return bar;
}
- (CGFloat)thickness {
  return 22;
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
  NSStatusItem* const item = [NSStatusItem new];
  item->ownButton = [NSStatusBarButton new];
  [FakeDesktop::shared().statusItems addObject:item];
  note("status item of length " + std::to_string(static_cast<int>(length)));
  return item;
}
- (void)removeStatusItem:(NSStatusItem*)item {
  note("the status item is removed");
  FakeDesktop::shared().storedPositions.erase(textOf(item.autosaveName));
  [FakeDesktop::shared().statusItems removeObject:item];
}
@end

// The user's hands

namespace brivane {

FakeDesktop& FakeDesktop::shared() {
  static FakeDesktop desktop;
  return desktop;
}

void FakeDesktop::reset() {
  @autoreleasepool {
    *this = FakeDesktop();
    screens = [NSMutableArray array];
    runningApplications = [NSMutableArray array];
    statusItems = [NSMutableArray array];
  }
}

std::vector<std::string> FakeDesktop::takeNotes() {
  return std::exchange(notes, {});
}

void FakeDesktop::becomeActive() {
  isActive = true;
  for (NSWindow* const window : windows) [window fakeApplicationIsActive];
}

void FakeDesktop::setDark(bool dark) {
  isDark = dark;
  announceChange(NSApplication.sharedApplication, @"effectiveAppearance");
}

NSWindow* FakeDesktop::windowTitled(const std::string& title) {
  for (NSWindow* const window : windows) {
    if (window != nil && window.title != nil && textOf(window.title) == title) return window;
  }
  return nil;
}

void FakeDesktop::open(NSMenu* menu) {
  @autoreleasepool {
    // AppKit doesn't ask the delegate whether there is more to come.
    if (menu->items.count == 0) return note("an empty menu doesn't open");
    openMenu = menu;
    if (menuTracks) menuTracks(true);
    [menu.delegate menuWillOpen:menu];
    menuChanges.clear();
  }
}

void FakeDesktop::close() {
  @autoreleasepool {
    NSMenu* const menu = std::exchange(openMenu, nil);
    highlighted = nil;
    menuChanges.clear();
    [menu.delegate menuDidClose:menu];
    if (menuTracks) menuTracks(false);
    returnToDefaultMode();
  }
}

void FakeDesktop::hold() {
  isHolding = true;
}

void FakeDesktop::letGo() {
  isHolding = false;
  endCancelledTracking();
  returnToDefaultMode();
}

bool FakeDesktop::tracksTheMouse() const {
  return isHolding || openMenu != nil;
}

void FakeDesktop::endCancelledTracking() {
  if (isHolding || !std::exchange(isCancelled, false)) return;
  close();
  loop.stop();
}

void FakeDesktop::performBlocks() {
  if (tracksTheMouse()) return;
  for (void (^const& block)(void) : std::exchange(blocks, {})) block();
}

void FakeDesktop::performInDefaultMode(const Task& task) {
  if (tracksTheMouse()) {
    waitingForDefaultMode.push_back(task);
  } else {
    task();
  }
}

void FakeDesktop::returnToDefaultMode() {
  if (tracksTheMouse()) return;
  for (const Task& task : std::exchange(waitingForDefaultMode, {})) loop.async(task);
}

void FakeDesktop::endProcess() {
  @autoreleasepool {
    for (NSStatusItem* item in [statusItems copy]) {
      (void)(__bridge_transfer id)(__bridge void*)item;
    }
    [statusItems removeAllObjects];
  }
}

void FakeDesktop::choose(const std::string& title) {
  @autoreleasepool {
    for (NSMenuItem* item in [itemsOf(openMenu) copy]) {
      if (!item.enabled || item->action == nullptr || textOf(item.title) != title) continue;
      close();
      send(item->action, item.target, item);
      return;
    }
    note("no command " + title);
  }
}

void FakeDesktop::pressArrowDown() {
  @autoreleasepool {
    bool isBelow = highlighted == nil;
    for (NSMenuItem* item in itemsOf(openMenu)) {
      if (isBelow && item.enabled && !item->isSeparator) {
        highlighted = item;
        return;
      }
      isBelow = isBelow || item == highlighted;
    }
  }
}

void FakeDesktop::drag(NSSlider* __weak const& slider, double value) {
  @autoreleasepool {
    const bool wasHolding = std::exchange(isHolding, true);
    slider.doubleValue = std::clamp(value, slider.minValue, slider.maxValue);
    if (slider.isContinuous) send(slider.action, slider.target, slider);
    isHolding = wasHolding;
  }
  if (slider == nil) objc::fail("a slider went while it was dragged");
}

/// A view that accepts the keys has them before it hears of the click.
void FakeDesktop::click(NSView* view, NSWindow* window) {
  @autoreleasepool {
    becomeActive();
    [window makeKeyAndOrderFront:nil];
    if (view.acceptsFirstResponder) [window makeFirstResponder:view];
    NSEvent* const event = [NSEvent new];
    event->ownType = NSEventTypeLeftMouseDown;
    [view mouseDown:event];
  }
}

namespace {

std::string letterOf(std::uint16_t keyCode) {
  constexpr std::uint16_t keyQ = 12;
  constexpr std::uint16_t keyW = 13;
  return keyCode == keyQ ? "q" : keyCode == keyW ? "w" : "another";
}

/// As the main menu sends an action without a target: to whoever takes it first.
bool sendAlongResponders(SEL action, NSWindow* window, NSMenuItem* sender) {
  for (NSResponder* const& responder :
       {window.firstResponder, static_cast<NSResponder*>(window),
        static_cast<NSResponder*>(NSApplication.sharedApplication)}) {
    if (![responder respondsToSelector:action]) continue;
    send(action, responder, sender);
    return true;
  }
  return false;
}

/// Keys that write nothing: F1 to F20, the arrows, Home, End and their like.
bool isFunctionKey(std::uint16_t keyCode) {
  constexpr std::array<std::uint16_t, 4> f17ToF20 = {64, 79, 80, 90};
  constexpr std::uint16_t firstOther = 96;
  return keyCode >= firstOther || std::ranges::count(f17ToF20, keyCode) != 0;
}

constexpr NSEventModifierFlags allModifiers =
    NSEventModifierFlagShift | NSEventModifierFlagControl | NSEventModifierFlagOption |
    NSEventModifierFlagCommand;

/// Whether AppKit offers the press to all views and then to the main menu before the view that has
/// the keys gets it.
bool isOfferedToAll(NSEvent* event) {
  constexpr std::uint16_t keyTab = 48;
  constexpr NSUInteger commandOrControl = NSEventModifierFlagCommand | NSEventModifierFlagControl;
  return (event.modifierFlags & commandOrControl) != 0 || isFunctionKey(event.keyCode) ||
         event.keyCode == keyEscape || event.keyCode == keyTab;
}

/// Only the menus below the main menu's items are looked at; their keys are with Command alone.
bool chooseByKey(NSMenu* mainMenu, NSEvent* event, NSWindow* window) {
  if (mainMenu == nil || (event.modifierFlags & allModifiers) != NSEventModifierFlagCommand) {
    return false;
  }
  const std::string letter = letterOf(event.keyCode);
  for (NSMenuItem* top in itemsOf(mainMenu)) {
    if (top.submenu == nil) continue;
    for (NSMenuItem* item in itemsOf(top.submenu)) {
      if (textOf(item->key) == letter) return sendAlongResponders(item->action, window, item);
    }
  }
  return false;
}

}  // namespace

NSEvent* FakeDesktop::keyDown(std::uint16_t keyCode, NSEventModifierFlags flags) {
  NSEvent* const event = [NSEvent new];
  event->ownType = NSEventTypeKeyDown;
  event->ownKeyCode = keyCode;
  constexpr NSEventModifierFlags ofFunctionKeys = 1 << 23;
  event->ownFlags = flags | (isFunctionKey(keyCode) ? ofFunctionKeys : 0);
  return event;
}

void FakeDesktop::press(NSWindow* window, std::uint16_t keyCode, NSEventModifierFlags flags) {
  @autoreleasepool {
    if (![window fakeIsKey]) return note("another window has the keys");
    NSEvent* const event = keyDown(keyCode, flags);
    if (isOfferedToAll(event)) {
      for (NSView* const& view : viewsBelow(window.contentView)) {
        if ([view performKeyEquivalent:event]) return;
      }
      if (chooseByKey(NSApplication.sharedApplication.mainMenu, event, window)) return;
    }
    [window.firstResponder keyDown:event];
  }
}

void FakeDesktop::press(NSButton* __weak const& button) {
  @autoreleasepool {
    send(button.action, button.target, button);
  }
  if (button == nil) objc::fail("a button went while it was pressed");
}

std::vector<std::string> FakeDesktop::drawnBy(NSView* view) {
  @autoreleasepool {
    drawn.clear();
    [view drawRect:view.bounds];
    return std::exchange(drawn, {});
  }
}

NSArray<NSMenuItem*>* itemsOf(NSMenu* menu) {
  return [menu->items copy];
}

double titleEdgeOf(NSMenu* menu) {
  const FakeDesktop& desktop = FakeDesktop::shared();
  for (NSMenuItem* item in menu->items) {
    if (item.state != NSControlStateValueOff) return desktop.titleEdge + desktop.tickColumnWidth;
  }
  return desktop.titleEdge;
}

NSScreen* makeFakeScreen(id number, const Rect& frame, const std::string& name, double headroom) {
  NSScreen* const screen = [NSScreen new];
  screen->ownFrame = NSMakeRect(frame.x, frame.y, frame.width, frame.height);
  screen->description = number == nil ? @{@"other" : @"thing"} : @{@"NSScreenNumber" : number};
  screen->name = stringOf(name);
  screen->headroom = headroom;
  return screen;
}

NSRunningApplication* makeFakeApplication(const std::string& bundleIdentifier, int process) {
  NSRunningApplication* const application = [NSRunningApplication new];
  application->identifier = stringOf(bundleIdentifier);
  application->process = process;
  return application;
}

}  // namespace brivane
