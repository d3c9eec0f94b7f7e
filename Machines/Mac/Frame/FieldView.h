#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/EditorWindow.h"

namespace brivane {

/// Since macOS 14 the system may make the application active later, or not at all: until then, the
/// window is in front without the keyboard.
void bringToFront(NSWindow* window);

}  // namespace brivane

/// A window's view that the program draws.
@interface BrivaneFieldView : NSView
- (instancetype)initWithField:(const brivane::WindowView&)field;
/// Disconnects from the program's view.
- (void)leaveField;
@end
