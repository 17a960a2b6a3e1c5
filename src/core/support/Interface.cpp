#include "core/support/Interface.h"

#include "core/support/Strings.h"

namespace mirvel {

int Interface::alert(const Alert& question) {
  const Answer answer = showAlert(question);
  if (answer.isSuppressed) remember(question);
  return answer.button;
}

void Interface::remember(const Alert& question) {
  if (!question.suppression.empty()) (void)m_defaults.set(question.suppression, true);  // at worst it comes again
}

void Interface::present(const Error& failure) {
  error(String::firstUppercased(failure.text()), {});
}

void Interface::saveError() {
  error(m_localize.anErrorOccurredWhileSaving(), m_localize.pleaseTryAgain());
}

}  // namespace mirvel
