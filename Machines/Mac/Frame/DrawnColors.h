#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Color.h"

namespace brivane {

/// The colour in the current drawing appearance, on which system colours depend. Main thread.
NSColor* drawnColor(const Paint& paint);

/// A dynamic system colour, resolved where it is shown.
NSColor* systemColor(SystemColor color);

}  // namespace brivane
