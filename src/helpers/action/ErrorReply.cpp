#include "helpers/action/ErrorReply.h"

#include <filesystem>
#include <string_view>

#include "core/support/Ascii.h"

namespace mirvel {

namespace {

/// What a system call says stands behind the doing: "can't write: No space left on device".
std::string withSmallBegin(std::string_view reason) {
  std::string text(reason);
  const bool isAcronym = text.size() > 1 && Ascii::lower(text[1]) != text[1];
  if (!isAcronym && !text.empty()) text[0] = Ascii::lower(text[0]);
  return text;
}

std::string suggestionFor(Error::Code code) {
  switch (code) {
    case Error::Code::NotFound:
      return "Make sure that the file and its folder exist, and try again.";
    case Error::Code::NotPermitted:
      return "Check who may change the file and its folder.";
    case Error::Code::Io:
      return "Make sure that the disk has room and works, and try again.";
    case Error::Code::LimitExceeded:
      return "Make it smaller and try again.";
    case Error::Code::Malformed:
    case Error::Code::UnsupportedEncoding:
    case Error::Code::MissingKey:
    case Error::Code::WrongType:
    case Error::Code::NoForm:
      return "Check the content of the job file.";
    case Error::Code::BadArgument:
      return "Choose another file or name and try again.";
    case Error::Code::NotTrusted:
      return "Make sure that only you can change the file and its folder, and try again.";
    case Error::Code::StillRunning:
      return "Wait until the job has ended, or end its process, and try again.";
  }
  return {};
}

plist::Dictionary withDomain(const char* domain, int code, plist::Dictionary more) {
  more.set("domain", domain);
  more.set("code", code);
  return {{"error", std::move(more)}};
}

}  // namespace

std::string sentenceOf(const Error& error) {
  constexpr std::string_view cannot = "can't ";
  const std::string_view message = error.message;
  const std::size_t colon = message.find(": ");
  if (error.file.empty() || !message.starts_with(cannot) || colon == std::string_view::npos) return error.text();
  const std::string_view doing = message.substr(cannot.size(), colon - cannot.size());
  const bool isAboutFolder = doing == "write" && error.code != Error::Code::BadArgument;
  const std::string what = isAboutFolder ? "The folder " + std::filesystem::path(error.file).parent_path().string()
                                         : "The file " + error.file;
  const std::string verb = doing == "write" ? "be written" : doing == "read" ? "be read" : "be deleted";
  if (doing != "write" && doing != "read" && doing != "delete") return error.text();
  return what + " can't " + verb + ": " + withSmallBegin(message.substr(colon + 2));
}

plist::Dictionary errorReply(ActionErrorCode code) {
  return withDomain(actionErrorDomain, static_cast<int>(code), {});
}

plist::Dictionary errorReply(const Error& error) {
  return withDomain(helperErrorDomain, static_cast<int>(error.code) + 1,
                    {{"description", sentenceOf(error)}, {"suggestion", suggestionFor(error.code)}});
}

}  // namespace mirvel
