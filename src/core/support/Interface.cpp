#include "core/support/Interface.h"

#include "core/support/Strings.h"

namespace mirvel {

int Interface::alert(const Alert& question) {
  const Answer answer = showAlert(question);
  if (answer.isSuppressed && !question.suppression.empty()) {
    (void)m_defaults.set(question.suppression, true);  // at worst the question comes again
  }
  return answer.button;
}

void Interface::present(const Error& failure) {
  error(String::firstUppercased(failure.text()), {});
}

void Interface::saveError() {
  error(m_localize.anErrorOccurredWhileSaving(), m_localize.pleaseTryAgain());
}

}  // namespace mirvel
