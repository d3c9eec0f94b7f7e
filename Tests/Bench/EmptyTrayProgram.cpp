// The floor that the resident start is measured against: a Qt program that is an icon in the tray
// and nothing else.
#include <QApplication>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QPixmap square(22, 22);
  square.fill(Qt::darkGray);
  QSystemTrayIcon icon{QIcon(square)};
  icon.setToolTip("nothing");
  icon.show();
  return QApplication::exec();
}
