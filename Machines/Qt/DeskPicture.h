#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>
#include <filesystem>

namespace brivane {

/// Where no screen shows the windows: a picture of all of them, in a file that is replaced whole
/// shortly after each change. Main thread.
class DeskPicture : public QObject {
 public:
  explicit DeskPicture(std::filesystem::path pictureFile);

  bool eventFilter(QObject* watched, QEvent* event) override;

  /// As the screen would show it now.
  static QImage take();

 private:
  void write();

  const std::filesystem::path file;
  QTimer settling;
};

}  // namespace brivane
