#pragma once

#include "core/base/Signal.h"
#include "core/editor/SectionStack.h"
#include "ui/editor/FieldForm.h"

namespace mirvel::ui {

/// A section that consists of the fields of the table, see `fieldsOf`.
class FieldsSection final : public Section {
 public:
  FieldsSection(const EditorContext& context, StackSection section);

  std::optional<InvalidField> refuse() override { return m_form.refuse(); }

 private:
  void fill(const Launchd& launchd) override { m_form.fill(launchd); }

  FieldForm m_form;
  Subscription m_rootChanged;
};

}  // namespace mirvel::ui
