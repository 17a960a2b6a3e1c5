#include "helpers/action/ErrorReply.h"

namespace mirvel {

plist::Dictionary errorReply(ActionErrorCode code) {
  return {{"error", plist::Dictionary{{"domain", actionErrorDomain}, {"code", static_cast<int>(code)}}}};
}

plist::Dictionary errorReply(const HelperFailure& failure) {
  return {{"error", failure.dictionary()}};
}

}  // namespace mirvel
