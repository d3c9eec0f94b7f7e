#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/EditorWindow.h"

/// A window's view that the program draws.
@interface BrivaneFieldView : NSView
- (instancetype)initWithField:(const brivane::WindowView&)field;
/// Disconnects from the program's view.
- (void)leaveField;
@end
