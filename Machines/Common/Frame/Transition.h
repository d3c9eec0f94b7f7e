#pragma once

#include "BrivaneUI/DisplayList.h"

namespace brivane {

/// How long a HUD's picture takes to become another.
constexpr double contentChangeSeconds = 0.14;

/// A picture on its way to another, `progress` from 0 to 1: bars grow, symbols are faded over, all
/// else is the new picture's. Pictures that are made of different parts have nothing in between.
DisplayList between(const DisplayList& from, const DisplayList& to, double progress);

/// Where another change sets out that comes in the middle of this one: bars are where they are, but
/// symbols are the new ones already, so that the parts are those of a picture.
DisplayList interrupted(const DisplayList& from, const DisplayList& to, double progress);

}  // namespace brivane
