#include "core/creation/DuplicateController.h"

#include "core/app/Program.h"
#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/SaveNewJob.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

std::string DuplicateController::selectedName() const {
  const auto job = m_program.selection.job();
  return job ? job->name : std::string();
}

std::string DuplicateController::title() const {
  const Localize& localize = m_program.foundation.localize;
  return bidirectionalString({localize.duplicate(), selectedName()}, Const::separator, localize.isRightToLeft());
}

std::string DuplicateController::nameTitle() const {
  return m_program.foundation.localize.name() + ':';
}

std::string DuplicateController::suggestedName() const {
  const auto& unsaved = m_program.creation.unsavedCopy;
  const auto job = m_program.selection.job();
  if (unsaved && job && unsaved->source.equalTo(job->url)) return unsaved->name;
  return m_program.foundation.localize.copyOf(selectedName());
}

bool DuplicateController::save(const std::string& name) {
  const auto source = m_program.selection.launchd();
  if (!source || m_program.editing.hasUnsavedChanges()) return false;
  auto content = source->plistDictionary();
  if (!content) return false;

  const Localize& localize = m_program.foundation.localize;
  Interface& interface = m_program.platform.interface;
  if (name == source->name) {
    interface.error(localize.renameTheItemAndTryAgain(), {});
    return false;
  }
  content->set("Label", name);
  const auto copy = makeNewJob(m_program, *content, source->url, source->kind);
  if (!copy) {
    interface.error(localize.anErrorOccurredWhileSaving(), localize.pleaseTryAgain());
    return false;
  }
  m_program.creation.unsavedCopy.reset();
  saveNewJob(m_program, copy, [&creation = m_program.creation, url = source->url, name](bool isWritten) {
    if (!isWritten) creation.unsavedCopy = {url, name};
  });
  return true;
}

}  // namespace mirvel
