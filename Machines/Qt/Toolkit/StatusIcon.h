#pragma once

#include <QIcon>

#include "BrivaneUI/Frame/StatusItem.h"

namespace brivane {

/// The button's picture in the sizes that trays use.
QIcon statusIcon(const StatusButton& button);

}  // namespace brivane
