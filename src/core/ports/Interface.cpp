#include "core/ports/Interface.h"

#include "core/text/Strings.h"

namespace mirvel {

std::vector<Alert::Button> Alert::buttons() const {
  std::vector<Button> result;
  for (const Button& button :
       {Button{defaultTitle, Interface::defaultButton}, Button{alternateTitle, Interface::alternateButton},
        Button{otherTitle, Interface::otherButton}, Button{cancelTitle, Interface::cancelButton}}) {
    if (!button.title.empty()) result.push_back(button);
  }
  return result;
}

int Alert::returnAnswer() const {
  return safeButton.value_or(buttons().front().answer);
}

int Alert::escapeAnswer() const {
  return safeButton.value_or(buttons().back().answer);
}

int Interface::alert(const Alert& question) {
  const Answer answer = showAlert(question);
  if (answer.isSuppressed) remember(question, answer.button);
  return answer.button;
}

void Interface::remember(const Alert& question, int answer) {
  const bool isCancelled = question.buttons().size() > 1 && answer == question.escapeAnswer();
  if (!question.suppression.empty() && !isCancelled)
    (void)m_defaults.set(question.suppression, true);  // on failure, the question is only asked again
}

void Interface::askAgain(const Alert& question) {
  if (m_defaults.boolean(question.suppression)) (void)m_defaults.set(question.suppression, false);
}

void Interface::present(const Error& failure) {
  error(String::firstUppercased(failure.text()), {});
}

void Interface::saveError() {
  error(m_localize.anErrorOccurredWhileSaving(), m_localize.pleaseTryAgain());
}

}  // namespace mirvel
