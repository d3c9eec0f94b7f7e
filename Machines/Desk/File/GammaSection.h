#pragma once

#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/File/JsonSection.h"

namespace brivane {

/// Reads a desk file's "gamma".
void readGamma(const JsonItem& item, GammaDescription& gamma);

}  // namespace brivane
