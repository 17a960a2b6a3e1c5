#pragma once

#include <QGridLayout>
#include <string>

class QLabel;

namespace mirvel::ui {

/// The two columns in which all sections stand: labels, as wide in each of them, and what belongs to them.
class SectionGrid final : public QGridLayout {
 public:
  static constexpr int labelWidth = 154;
  static constexpr int columnSpacing = 8;
  /// Of the square picture of a job.
  static constexpr int iconSide = 48;
  /// Between the sections, and around all of them.
  static constexpr int sectionSpacing = 12;
  static QMargins paneMargins() { return {20, 16, 20, 20}; }

  explicit SectionGrid(QWidget* section);

  /// Adds a label, with a colon, before a field of one line. The field takes the width that it wants or, stretched,
  /// all.
  void addField(const std::string& title, QWidget& field, bool isStretched = true);
  /// The same for a field of several lines, of which the first stands beside the label: its text begins so many pixels
  /// below the field's top.
  void addText(const std::string& title, QWidget& field, int textTop);
  /// Puts a picture in the place of the first label.
  void addIcon(QWidget& icon);
  /// Adds a field without a label.
  void addRow(QWidget& field);
  /// Takes all out of it.
  void clear();
  /// Moves all fields away from the labels by so much.
  void indentFields(int distance);

 private:
  QLabel* addLabel(const std::string& title, QWidget& field, Qt::Alignment vertical);
};

}  // namespace mirvel::ui
