#pragma once

#include <QWidget>

namespace brivane {

/// A line of text, elided at its end where there is too little room. Main thread.
class ElidedLabel : public QWidget {
 public:
  explicit ElidedLabel(QWidget* parent);

  void setText(const QString& newText);
  const QString& text() const { return ownText; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString ownText;
};

}  // namespace brivane
