#include "Machines/Qt/Toolkit/StatusIcon.h"

#include <QPixmap>
#include <algorithm>

#include "Machines/Qt/Toolkit/Painter.h"

namespace brivane {

QIcon statusIcon(const StatusButton& button) {
  QIcon icon;
  for (const int side : {16, 22, 24, 32, 48, 64, 128}) {
    const double scale = side / std::max(button.iconWidth, button.iconHeight);
    const QtPainter::View view{.width = button.iconWidth, .height = button.iconHeight};
    icon.addPixmap(QPixmap::fromImage(renderedPicture(button.icon, view, scale)));
  }
  return icon;
}

}  // namespace brivane
