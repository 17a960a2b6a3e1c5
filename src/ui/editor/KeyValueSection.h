#pragma once

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/app/Program.h"
#include "core/editor/KeyValueItem.h"

namespace mirvel::ui {

class SectionGrid;

/// Rows of keys and values that can only be read, and in the editor be deleted.
class KeyValueSection final : public QWidget {
 public:
  enum class EditSection { deprecated, unknown };

  explicit KeyValueSection(Program& program, QWidget* parent = nullptr);

  /// Deletes a key, and says whether it did: its row goes then. Asked only in the editor.
  std::function<bool(const std::string& key)> remove;

  /// Shows these rows instead of what was shown. With an `editSection` each row has a button that deletes it.
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

  Program& m_program;
  std::optional<EditSection> m_editSection;
  QWidget* m_grid = nullptr;  // null: there are no rows
  SectionGrid* m_cells = nullptr;
  std::vector<Row> m_rows;
};

}  // namespace mirvel::ui
