#pragma once

#include <QLayout>
#include <QList>

namespace brivane {

/// Widgets in rows, wrapped like the words of a text, each in its own size. Main thread.
class FlowLayout : public QLayout {
 public:
  FlowLayout(QWidget* parent, int gapPoints);
  ~FlowLayout() override;
  FlowLayout(const FlowLayout&) = delete;
  FlowLayout& operator=(const FlowLayout&) = delete;

  void addItem(QLayoutItem* item) override { items.append(item); }
  int count() const override { return static_cast<int>(items.size()); }
  QLayoutItem* itemAt(int index) const override { return items.value(index); }
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return arrange({0, 0, width, 0}, false); }
  /// The size of all widgets in one row.
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& box) override;

 private:
  int arrange(const QRect& box, bool isPlacing) const;

  const int gap;
  QList<QLayoutItem*> items;
};

}  // namespace brivane
