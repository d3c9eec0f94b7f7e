#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/EditorWindow.h"

/// A view of the program's own in a window.
@interface BrivaneFieldView : NSView
- (instancetype)initWithField:(const brivane::WindowView&)field;
/// The program's view is asked for nothing any more.
- (void)leaveField;
@end
