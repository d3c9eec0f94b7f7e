// AppKit offers a press with Command or Control, and of keys that write nothing, as a key
// equivalent first; the focused field takes it then, or Command could never be part of a hotkey. A
// press that nobody takes so comes to the field again.
#include "Machines/Mac/Frame/FieldView.h"

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/Painter.h"

void brivane::bringToFront(NSWindow* window) {
  [window makeKeyAndOrderFront:nil];
  [window orderFrontRegardless];
}

@implementation BrivaneFieldView {
  /// Null after `leaveField`.
  brivane::CustomView* view;
}

- (instancetype)initWithField:(const brivane::WindowView&)field {
  self = [super initWithFrame:brivane::nsRect(field.frame)];
  if (self == nil) return nil;
  view = field.view;
  [self setAccessibilityElement:YES];
  [self setAccessibilityRole:NSAccessibilityButtonRole];
  [self setAccessibilityLabel:brivane::nsString(field.accessibilityLabel)];
  return self;
}

- (void)leaveField {
  view = nullptr;
}

- (BOOL)acceptsFirstResponder {
  return view != nullptr && view->acceptsFirstResponder();
}

- (BOOL)resignFirstResponder {
  return view == nullptr || view->resignFirstResponder();
}

- (void)mouseDown:(NSEvent*)event {
  if (view != nullptr) view->mouseDown();
}

- (void)keyDown:(NSEvent*)event {
  if (![self takesKey:event]) [super keyDown:event];
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
  return self.window.firstResponder == self && event.type == NSEventTypeKeyDown &&
         [self takesKey:event];
}

- (BOOL)takesKey:(NSEvent*)event {
  return view != nullptr && view->keyDown({event.keyCode, event.modifierFlags});
}

- (void)drawRect:(NSRect)dirtyRect {
  if (view == nullptr) return;
  brivane::MacPainter painter;
  brivane::draw(view->draw(), painter);
}

- (id)accessibilityValue {
  return view == nullptr ? nil : brivane::nsString(view->accessibilityText());
}

/// Like a click, makes the window key.
- (BOOL)accessibilityPerformPress {
  if (view == nullptr) return NO;
  [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
  brivane::bringToFront(self.window);
  view->mouseDown();
  return YES;
}

@end
