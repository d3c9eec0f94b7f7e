#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// A picture on its way to another, `progress` from 0 to 1: bars grow, symbols are faded over, all
/// else is the new picture's. Pictures that are made of different parts have nothing in between.
DisplayList between(const DisplayList& from, const DisplayList& to, double progress);

}  // namespace brivane
