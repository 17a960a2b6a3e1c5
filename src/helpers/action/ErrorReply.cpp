#include "helpers/action/ErrorReply.h"

namespace mirvel {

propertylist::Dictionary errorReply(ActionErrorCode code) {
  return {{"error", propertylist::Dictionary{{"domain", actionErrorDomain}, {"code", static_cast<int>(code)}}}};
}

propertylist::Dictionary errorReply(const HelperFailure& failure) {
  return {{"error", failure.dictionary()}};
}

}  // namespace mirvel
