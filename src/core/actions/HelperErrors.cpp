#include "core/actions/HelperErrors.h"

#include <cerrno>
#include <string>

#include "core/actions/ActionTexts.h"
#include "core/locale/Localize.h"
#include "core/messages/HelperFailure.h"
#include "core/ports/Interface.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

namespace {

using Operation = HelperFailure::Operation;

std::string unknownError(const propertylist::Integer& code, const Localize& localize) {
  return bidirectionalString({localize.anUnknownErrorOccurred(), '(' + code.text() + ')'}, " ",
                             localize.isRightToLeft());
}

/// The operation that failed; empty if it concerns no file.
std::string headlineOf(const HelperFailure& failure, const Localize& localize) {
  const std::string& file = failure.cause.file;
  if (failure.operation == Operation::Test) return ActionTexts(localize).theTestCouldntBeRun();
  if (failure.operation == Operation::Log) return ActionTexts(localize).anUnknownErrorOccurredWhenFetchingTheLog();
  if (file.empty()) return {};
  switch (failure.operation) {
    case Operation::Write:
      return ActionTexts(localize).couldntBeWritten(file);
    case Operation::Delete:
      return ActionTexts(localize).couldntBeDeleted(file);
    case Operation::Read:
      return ActionTexts(localize).couldntBeRead(file);
    case Operation::Load:
      return ActionTexts(localize).theJobCouldntBeLoaded(file);
    case Operation::Unload:
      return ActionTexts(localize).theJobCouldntBeStopped(file);
    case Operation::Control:
      return ActionTexts(localize).theJobCouldntBeStartedOrStopped(file);
    case Operation::Answer:
    case Operation::Test:
    case Operation::Log:
      break;
  }
  return {};
}

/// The reason by the system's error code, with advice; empty for rare codes.
std::string systemReason(int systemCode, const Localize& localize) {
  switch (systemCode) {
    case ENOSPC:
    case EDQUOT:
      return ActionTexts(localize).theDiskIsFull();
    case EROFS:
      return ActionTexts(localize).theDiskCantBeWritten();
    case EACCES:
    case EPERM:
      return ActionTexts(localize).checkWhoMayChangeTheFile();
    case ENOENT:
    case ENOTDIR:
      return ActionTexts(localize).theFileOrItsFolderIsMissing();
    case EEXIST:
      return ActionTexts(localize).aFileWithThisNameExists();
    case ENAMETOOLONG:
      return ActionTexts(localize).theNameIsTooLong();
    case EIO:
      return ActionTexts(localize).theDiskReportedAnError();
    default:
      return {};
  }
}

/// The reason by our own error code, for failures without a system code.
std::string ownReason(const HelperFailure& failure, const Localize& localize) {
  switch (failure.cause.code) {
    case Error::Code::NotFound:
      return failure.operation == Operation::Control ? ActionTexts(localize).theJobIsntLoaded()
                                                     : ActionTexts(localize).theFileOrItsFolderIsMissing();
    case Error::Code::NotPermitted:
      return ActionTexts(localize).checkWhoMayChangeTheFile();
    case Error::Code::Malformed:
    case Error::Code::UnsupportedEncoding:
    case Error::Code::MissingKey:
    case Error::Code::WrongType:
    case Error::Code::NoForm:
      return failure.operation == Operation::Answer ? localize.pleaseTryAgain()
                                                    : ActionTexts(localize).checkTheContentsOfTheJobFile();
    case Error::Code::LimitExceeded:
      return ActionTexts(localize).itIsTooLargeForAJobFile();
    case Error::Code::BadArgument:
      return failure.operation == Operation::Write ? localize.renameTheItemAndTryAgain() : localize.pleaseTryAgain();
    case Error::Code::NotTrusted:
      return ActionTexts(localize).makeSureThatOnlyYouCanChangeTheFile();
    case Error::Code::StillRunning:
      return ActionTexts(localize).waitUntilTheJobHasEnded();
    case Error::Code::Io:
    case Error::Code::NotRunning:
    case Error::Code::HungUp:
    case Error::Code::Cancelled:
      break;
  }
  return localize.pleaseTryAgain();
}

/// The original message, which isn't translated: the output of a system tool, or a position in a file.
std::string detailOf(const Error& cause) {
  Error withoutFile = cause;
  withoutFile.file.clear();
  return withoutFile.text();
}

HelperMessage messageOf(const HelperFailure& failure, const std::string& unknown, const Localize& localize) {
  const std::string headline = headlineOf(failure, localize);
  const std::string known = systemReason(failure.cause.systemCode, localize);
  std::string text = known.empty() ? ownReason(failure, localize) : known;
  if (failure.isWritten) text = ActionTexts(localize).theFileWasSaved() + ' ' + text;
  if (known.empty() && !failure.cause.message.empty()) text += "\n\n" + detailOf(failure.cause);
  return {headline.empty() ? unknown : headline, text};
}

}  // namespace

HelperMessage helperMessage(const HelperError& error, const Localize& localize) {
  if (!error.domain || !error.code) return {localize.anUnknownErrorOccurred(), localize.pleaseTryAgain()};

  const std::string unknown = unknownError(*error.code, localize);
  if (error.failure) return messageOf(*error.failure, unknown, localize);
  if (*error.domain != actionErrorDomain) {
    if (error.description && error.suggestion) return {*error.description, *error.suggestion};
    return {unknown, localize.pleaseTryAgain()};
  }
  const std::string notChanged = ActionTexts(localize).theItemCouldntBeAddedOrRemovedBecauseOfAnUnknownError();
  switch (static_cast<ActionErrorCode>(error.code->toInt64().value_or(0))) {
    case ActionErrorCode::NotConnected:
      return {ActionTexts(localize).couldNotEstablishCommunicationWithHelperTool(), localize.pleaseTryAgain()};
    case ActionErrorCode::NotChanged:
      return {notChanged, localize.pleaseTryAgain()};
    case ActionErrorCode::NotChangedTryNewName:
      return {notChanged, localize.renameTheItemAndTryAgain()};
    case ActionErrorCode::NoLog:
      return {ActionTexts(localize).anUnknownErrorOccurredWhenFetchingTheLog(), localize.pleaseTryAgain()};
  }
  return {unknown, localize.pleaseTryAgain()};
}

void presentHelperError(const HelperError& error, const Localize& localize, Interface& interface) {
  const HelperMessage shown = helperMessage(error, localize);
  interface.error(shown.message, shown.informativeText);
}

void presentRefusal(HelperConnections::Refusal refusal, const Localize& localize, Interface& interface) {
  const auto advice = [&] {
    switch (refusal) {
      case HelperConnections::Refusal::NoAgent:
        return ActionTexts(localize).startAnAuthenticationAgent();
      case HelperConnections::Refusal::NoService:
        return ActionTexts(localize).startPolkit();
      case HelperConnections::Refusal::NoTool:
        return ActionTexts(localize).installPkexec();
      case HelperConnections::Refusal::NotAuthorised:
        return ActionTexts(localize).askAnAdministrator();
      case HelperConnections::Refusal::Unknown:
        break;
    }
    return localize.pleaseTryAgain();
  };
  interface.error(ActionTexts(localize).cannotAuthenticate(), advice());
}

}  // namespace mirvel
