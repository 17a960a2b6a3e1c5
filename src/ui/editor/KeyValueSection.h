#pragma once

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/editor/ValueTexts.h"

namespace mirvel::ui {

class SectionGrid;

/// Rows of keys and values that can only be read, and in the editor be deleted.
class KeyValueSection final : public QWidget {
 public:
  enum class EditSection { deprecated, unknown };

  explicit KeyValueSection(const Localize& localize, QWidget* parent = nullptr);

  /// Deletes a key, and returns whether it did, so that its row is removed. Called in the editor only.
  std::function<bool(const std::string& key)> remove;

  /// Replaces the rows. With an `editSection` each row has a button that deletes it.
  void setKeyValues(const std::vector<KeyValueItem>& items, std::optional<EditSection> editSection = std::nullopt);

 private:
  struct Row {
    std::string key;
    std::vector<QWidget*> cells;  // the last one takes the focus
  };

  void dropGrid();
  void addRow(const KeyValueItem& item);
  QWidget* makeValue(const KeyValueItem& item) const;
  QWidget* makeDeleteButton(const std::string& key);
  void deleteRow(const std::string& key);
  void dropRow(std::vector<Row>::iterator row);

  const Localize& m_localize;
  std::optional<EditSection> m_editSection;
  QWidget* m_grid = nullptr;  // null: there are no rows
  SectionGrid* m_cells = nullptr;
  std::vector<Row> m_rows;
};

}  // namespace mirvel::ui
