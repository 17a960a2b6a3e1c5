#include "core/editor/IconEditing.h"

#include <system_error>
#include <utility>

#include "core/catalogue/CustomIcons.h"
#include "core/editor/EditorTexts.h"
#include "core/files/ReplaceFile.h"
#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/ports/Workspace.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace fs = std::filesystem;

IconEditing::IconEditing(fs::path applicationSupport, Interface& interface, Workspace& workspace,
                         const Localize& localize, const Selection& selection, const Shell& shell, Changed changed)
    : m_applicationSupport(std::move(applicationSupport)),
      m_interface(interface),
      m_workspace(workspace),
      m_localize(localize),
      m_selection(selection),
      m_shell(shell),
      m_changed(std::move(changed)) {}

void IconEditing::setIcon(const std::shared_ptr<Job>& job, const std::string& png) {
  const auto name = job->iconStoreName();
  if (!name) return;
  const fs::path file = customIconFile(m_applicationSupport, *name);
  if (const auto made = makePrivateFolder(file.parent_path()); !made) return report(made.error());
  if (const auto written = replaceFile(file, png); !written) return report(written.error());
  job->customIconDigest = name;
  job->customIcon = m_workspace.image(file);
  show(job);
}

void IconEditing::removeIcon(const std::shared_ptr<Job>& job) {
  const auto name = job->iconStoreName();
  if (!name) return;
  const fs::path file = customIconFile(m_applicationSupport, *name);
  std::error_code failure;
  fs::remove(file, failure);
  if (failure) return report(systemError(failure.value(), "remove the picture", file.string()));
  job->customIcon.reset();
  show(job);
}

void IconEditing::show(const std::shared_ptr<Job>& job) {
  if (m_shell.emptyIconCache) m_shell.emptyIconCache();  // the new picture has the same file name
  if (m_shell.detail && job == m_selection.job()) m_shell.detail->updateIcon();
  m_changed(job);
}

void IconEditing::report(const Error& failure) {
  m_interface.error(EditorTexts(m_localize).theIconCouldntBeSaved(), failure.text());
}

}  // namespace mirvel
