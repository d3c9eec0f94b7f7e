#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// Where no screen shows the windows: a picture of all of them, in a file that is replaced whole
/// shortly after each change. The log has a line that says where it is, or why it isn't. Main
/// thread.
class DeskPicture : public QObject {
 public:
  DeskPicture(std::filesystem::path pictureFile, SystemLog& systemLog);

  bool eventFilter(QObject* watched, QEvent* event) override;

  /// As the screen would show it now.
  static QImage take();

 private:
  void write();
  void tell(const QString& problem);

  const std::filesystem::path file;
  SystemLog& log;
  /// As the log has it; empty for none, and nothing before the first picture.
  std::optional<QString> toldProblem;
  QTimer settling;
};

}  // namespace brivane
