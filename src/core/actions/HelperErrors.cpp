#include "core/actions/HelperErrors.h"

#include <string>

#include "core/actions/ActionError.h"
#include "core/support/Bidirectional.h"
#include "core/support/Interface.h"
#include "core/support/Localize.h"

namespace mirvel {

void presentHelperError(const plist::Dictionary& error, const Localize& localize, Interface& interface) {
  const auto string = [&error](std::string_view key) {
    const plist::Value* const value = error.find(key);
    return value ? value->as<std::string>() : nullptr;
  };
  const plist::Value* const codeValue = error.find("code");
  const auto* integer = codeValue ? codeValue->as<plist::Integer>() : nullptr;
  const std::string* const domain = string("domain");
  if (!domain || !integer) return interface.error(localize.anUnknownErrorOccurred(), localize.pleaseTryAgain());

  const std::string text = bidirectionalString({localize.anUnknownErrorOccurred(), '(' + integer->text() + ')'}, " ",
                                               localize.isRightToLeft());
  if (*domain != actionErrorDomain) {
    const std::string* const description = string("description");
    const std::string* const suggestion = string("suggestion");
    if (description && suggestion) return interface.error(*description, *suggestion);
    return interface.error(text, localize.pleaseTryAgain());
  }
  const std::string notChanged = localize.theItemCouldntBeAddedOrRemovedBecauseOfAnUnknownError();
  switch (static_cast<ActionErrorCode>(integer->toInt64().value_or(0))) {
    case ActionErrorCode::NotConnected:
      return interface.error(localize.couldNotEstablishCommunicationWithHelperTool(), localize.pleaseTryAgain());
    case ActionErrorCode::NotChanged:
      return interface.error(notChanged, localize.pleaseTryAgain());
    case ActionErrorCode::NotChangedTryNewName:
      return interface.error(notChanged, localize.renameTheItemAndTryAgain());
    case ActionErrorCode::NoLog:
      return interface.error(localize.anUnknownErrorOccurredWhenFetchingTheLog(), localize.pleaseTryAgain());
  }
  interface.error(text, localize.pleaseTryAgain());
}

}  // namespace mirvel
