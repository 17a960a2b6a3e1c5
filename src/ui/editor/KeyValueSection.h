#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "core/editor/SectionStack.h"
#include "core/editor/ValueTexts.h"
#include "ui/editor/Section.h"

class QPushButton;

namespace mirvel::ui {

class SectionGrid;
class ValueText;

/// Read-only rows of keys and values, which can have buttons to delete them. Secret values are concealed until a button
/// is pressed. Shows at most 300 rows, and truncates long texts.
class KeyValueSection final : public QWidget {
 public:
  enum class Deletable { No, Yes };

  explicit KeyValueSection(const Localize& localize, QWidget* parent = nullptr);

  /// Called when a delete button is clicked. Deletes the key and returns whether it did, in which case the row is
  /// removed and the next delete button gets the focus. Required for deletable rows.
  std::function<bool(const std::string& key)> remove;

  /// Replaces all rows.
  void setKeyValues(const std::vector<KeyValueItem>& items, Deletable deletable = Deletable::No);

 private:
  struct Row {
    std::string key;
    std::vector<QWidget*> cells;  ///< of deletable rows, the last one is the button
  };

  void dropGrid();
  void addRow(const KeyValueItem& item);
  QWidget* makeValue(const KeyValueItem& item) const;
  QWidget* makeButton(const KeyValueItem& item, QWidget& value);
  QPushButton* makeSmallButton(const std::string& title, const std::string& key);
  QWidget* makeShowButton(const KeyValueItem& item, ValueText& value);
  QWidget* makeDeleteButton(const std::string& key);
  void deleteRow(const std::string& key);
  void dropRow(std::vector<Row>::iterator row);

  const Localize& m_localize;
  Deletable m_deletable = Deletable::No;
  QWidget* m_grid = nullptr;  ///< null if there are no rows
  SectionGrid* m_cells = nullptr;
  std::vector<Row> m_rows;
};

/// The label of a value: a key and a colon, in the column of labels. Breaks a key that is wider between its words.
class KeyLabel final : public QLabel {
 public:
  /// The colon is at the end of the text in the parent's layout direction.
  explicit KeyLabel(const std::string& key, QWidget* parent);
};

/// A section of read-only keys. If they are deletable, it must be the one of deprecated or of unknown keys.
class KeysSection final : public Section {
 public:
  KeysSection(const EditorContext& context, StackSection section,
              KeyValueSection::Deletable deletable = KeyValueSection::Deletable::No);

  bool narrow(const FieldSearch& search) override;

 private:
  void fill(const Launchd& launchd) override;
  bool isShown(const std::string& key) const;
  std::vector<KeyValueItem> rowsOf(const jobfile::Plist& plist) const;
  bool remove(const std::string& key);

  const StackSection m_section;
  const KeyValueSection::Deletable m_deletable;
  KeyValueSection* m_rows;
  std::vector<KeyValueItem> m_shown;
};

}  // namespace mirvel::ui
