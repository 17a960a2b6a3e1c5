#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace mirvel::ui {

/// Arranges widgets from left to right in as many lines as their width needs. An item wider than the layout is made
/// narrower. Labels stay on the line of the preceding item. Items of a line are centred vertically.
class FlowLayout final : public QLayout {
 public:
  explicit FlowLayout(QWidget* parent = nullptr) : QLayout(parent) {}
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override { m_items.emplace_back(item); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  int count() const override { return static_cast<int>(m_items.size()); }

  QSize sizeHint() const override;
  QSize minimumSize() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  void setGeometry(const QRect& rect) override;
  Qt::Orientations expandingDirections() const override { return {}; }

 private:
  struct Line {
    std::vector<QLayoutItem*> items = {};
    int width = 0;
    int height = 0;
  };

  std::vector<Line> lines(int width) const;
  void place(const Line& line, QRect within) const;
  int gap() const;

  std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

}  // namespace mirvel::ui
