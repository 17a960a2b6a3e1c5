#pragma once

#include <QGridLayout>
#include <string>

class QLabel;

namespace mirvel::ui {

/// The layout of all sections: a column of labels, equally wide in each section, and a column of fields.
class SectionGrid final : public QGridLayout {
 public:
  static constexpr int labelWidth = 154;
  static constexpr int columnSpacing = 8;
  /// The icon of a job is a square.
  static constexpr int iconSide = 48;
  /// Between the sections, and around all of them.
  static constexpr int sectionSpacing = 12;
  static QMargins paneMargins() { return {20, 16, 20, 20}; }

  explicit SectionGrid(QWidget* section);

  /// Adds a label, with a colon, and a field of one line. The field gets its preferred width or, stretched, all of it.
  void addField(const std::string& title, QWidget& field, bool isStretched = true);
  /// The same for a field of several lines, with the label beside the first: `textTop` is the distance in pixels from
  /// the top of the field to its text. Returns the label.
  QLabel& addText(const std::string& title, QWidget& field, int textTop);
  /// Adds a picture in the place of the first label.
  void addIcon(QWidget& icon);
  /// Adds a field without a label.
  void addRow(QWidget& field);
  /// Removes and deletes all widgets.
  void clear();
  /// Increases the distance between labels and fields, in pixels.
  void indentFields(int distance);

 private:
  QLabel* addLabel(const std::string& title, QWidget& field, Qt::Alignment vertical);
};

}  // namespace mirvel::ui
