#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// A picture of all windows for a desk without a screen, in a file that is replaced as a whole
/// shortly after each change. The log says where the file is, or why it can't be written. Main
/// thread.
class DeskPicture : public QObject {
 public:
  DeskPicture(std::filesystem::path pictureFile, SystemLog& systemLog);

  bool eventFilter(QObject* watched, QEvent* event) override;

  /// What a screen would show now.
  static QImage take();

 private:
  void write();
  void logResult(const QString& problem);

  const std::filesystem::path file;
  SystemLog& log;
  /// The problem last logged; empty for none, nothing before the first picture.
  std::optional<QString> loggedProblem;
  QTimer settling;
};

}  // namespace brivane
