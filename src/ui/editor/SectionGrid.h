#pragma once

#include <QGridLayout>
#include <QScrollArea>
#include <string>

class QLabel;

namespace mirvel::ui {

/// The layout of a section: a column of labels, which has the same width in all sections, and a column of fields.
class SectionGrid final : public QGridLayout {
 public:
  static constexpr int labelWidth = 154;
  static constexpr int columnSpacing = 8;
  /// Side of the square icon of a job.
  static constexpr int iconSide = 48;
  /// Distance between sections, and the margins around all of them.
  static constexpr int sectionSpacing = 12;
  static QMargins paneMargins() { return {20, 16, 20, 20}; }

  explicit SectionGrid(QWidget* section);

  /// Adds a label, with a colon, and a field of one line. A field that isn't stretched has its preferred width. The
  /// title also becomes the accessible name of a field without one.
  void addField(const std::string& title, QWidget& field, bool isStretched = true);
  /// The same for a field of several lines, with the label beside the first line. `textTop` is the distance in pixels
  /// from the top of the field to its text. Returns the label.
  QLabel& addText(const std::string& title, QWidget& field, int textTop);
  /// Adds an icon in place of the first label.
  void addIcon(QWidget& icon);
  /// Adds a field without a label.
  void addRow(QWidget& field);
  /// Removes and deletes all widgets.
  void clear();
  /// Increases the distance between labels and fields, in pixels.
  void indentFields(int distance);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel* addLabel(const std::string& title, QWidget& field, Qt::Alignment vertical);
};

/// A scroll area for a stack of sections. It scrolls vertically only, and so can't be narrower than its sections.
class StackScrollView : public QScrollArea {
 public:
  explicit StackScrollView(const QString& accessibleName);

  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
