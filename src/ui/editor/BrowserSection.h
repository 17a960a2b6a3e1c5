#pragma once

#include <optional>
#include <string>

#include "core/editor/Browser.h"
#include "core/editor/Fields.h"
#include "ui/editor/BrowserModel.h"
#include "ui/editor/Section.h"

namespace mirvel::ui {

class BrowserView;

/// The section of a key with a nested dictionary: `Sockets`, `MachServices` or `LaunchEvents`.
class BrowserSection final : public Section {
 public:
  /// The schema is a constant.
  BrowserSection(const EditorContext& context, const BrowserSchema& schema, BrowserModel::Access access);
  ~BrowserSection() override;

  std::optional<InvalidField> refuse() override;

 private:
  void fill(const Launchd& launchd) override;
  void write(Editing::Step step, const std::string& place);
  void makeCell();
  bool isRemovable() const;
  void remove();

  const Field m_field;
  Browser m_browser;
  BrowserView* m_view;
  std::string m_path;  ///< of the job that is shown
};

/// The schema of a section that consists of a browser; null for other sections.
const BrowserSchema* browserSchemaOf(StackSection section);

}  // namespace mirvel::ui
