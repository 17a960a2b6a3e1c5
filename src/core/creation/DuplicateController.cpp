#include "core/creation/DuplicateController.h"

#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/creation/SaveNewJob.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

std::string DuplicateController::selectedName() const {
  const auto job = m_context.selection.job();
  return job ? job->name : std::string();
}

std::string DuplicateController::title() const {
  const Localize& localize = m_context.foundation.localize;
  return bidirectionalString({CreationTexts(localize).duplicate(), selectedName()}, Const::separator,
                             localize.isRightToLeft());
}

std::string DuplicateController::nameTitle() const {
  return m_context.foundation.localize.name() + ':';
}

std::string DuplicateController::suggestedName() const {
  const auto& unsaved = m_context.creation.unsavedCopy;
  const auto job = m_context.selection.job();
  if (unsaved && job && unsaved->source.equalTo(job->url)) return unsaved->name;
  return CreationTexts(m_context.foundation.localize).copyOf(selectedName());
}

bool DuplicateController::save(const std::string& name) {
  const auto source = m_context.selection.launchd();
  if (!source || m_context.editing.hasUnsavedChanges()) return false;
  auto content = source->plistDictionary();
  if (!content) return false;

  const Localize& localize = m_context.foundation.localize;
  Interface& interface = m_context.platform.interface;
  if (name == source->name) {
    interface.error(localize.renameTheItemAndTryAgain(), {});
    return false;
  }
  content->set("Label", name);
  const auto copy = makeNewJob(m_context, *content, source->url, source->kind);
  if (!copy) {
    interface.error(localize.anErrorOccurredWhileSaving(), localize.pleaseTryAgain());
    return false;
  }
  m_context.creation.unsavedCopy.reset();
  saveNewJob(m_context, copy, [&creation = m_context.creation, url = source->url, name](bool isWritten) {
    if (!isWritten) creation.unsavedCopy = {url, name};
  });
  return true;
}

}  // namespace mirvel
