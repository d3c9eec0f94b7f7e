#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Color.h"

namespace brivane {

/// The colour as the appearance that is drawn in shows it; system colours differ from one to the
/// next. Main thread.
NSColor* drawnColor(const Paint& paint);

/// A system colour that resolves itself wherever it is shown.
NSColor* systemColor(SystemColor color);

}  // namespace brivane
