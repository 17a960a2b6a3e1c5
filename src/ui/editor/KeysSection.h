#pragma once

#include <optional>
#include <vector>

#include "core/editor/SectionStack.h"
#include "ui/editor/KeyValueSection.h"
#include "ui/editor/Section.h"

namespace mirvel::ui {

/// A section of keys that can only be read, and in the editor be deleted.
class KeysSection final : public Section {
 public:
  KeysSection(const EditorContext& context, StackSection section,
              std::optional<KeyValueSection::EditSection> editSection = std::nullopt);

 private:
  void fill(const Launchd& launchd) override;
  bool remove(const std::string& key);

  StackSection m_section;
  std::optional<KeyValueSection::EditSection> m_editSection;
  KeyValueSection* m_rows;
  std::vector<KeyValueItem> m_shown;
};

}  // namespace mirvel::ui
