#pragma once

#include "Machines/Desk/DeskDescription.h"
#include "Machines/Desk/JsonSection.h"

namespace brivane {

/// Reads a desk file's "gamma".
void readGamma(const JsonItem& item, GammaDescription& gamma);

}  // namespace brivane
