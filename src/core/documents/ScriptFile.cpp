#include "core/documents/ScriptFile.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/files/ExtendedAttributes.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/files/URL.h"
#include "core/scripts/SyntaxHelper.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

#ifdef __APPLE__
const char* const textEncodingAttributeName = "com.apple.TextEncoding";
#else
const char* const textEncodingAttributeName = "user.com.apple.TextEncoding";
#endif

namespace {

Error withPath(Error error, const fs::path& path) {
  error.file = path.string();
  return error;
}

bool isLink(const fs::path& path) {
  std::error_code failure;
  return fs::is_symlink(fs::symlink_status(path, failure));
}

struct Content {
  std::string bytes;
  FileState state;
};

/// Reads the beginning first, so that a program that is too large is refused as a program.
Result<Content> readContent(const fs::path& path) {
  const auto file = RegularFile::open(path);
  if (!file) return file.error();
  auto bytes = readFile(file->descriptor.number(), largestScript, path);
  if (!bytes) return bytes.error();
  auto state = stateOf(file->descriptor.number(), *bytes, path);
  if (!state) return state.error();
  return Content{.bytes = *std::move(bytes), .state = *std::move(state)};
}

/// A sentence rather than a number of bytes.
Error explained(Error error, const fs::path& path) {
  if (error.code != Error::Code::LimitExceeded) return error;
  const auto beginning = readBeginning(path, 4);
  if (beginning && isMachineCode(*beginning)) error.message = "it is a compiled program, not a text";
  return error;
}

}  // namespace

Result<LoadedScript> loadScript(const fs::path& path, const std::string& locale,
                                const std::optional<std::string>& encoding) {
  std::error_code failure;
  const fs::path resolved = fs::canonical(path, failure);
  if (failure) return systemError(failure.value(), "read", path.string());
  auto content = readContent(resolved);
  if (!content) return explained(content.error(), resolved);
  const std::string attribute = extendedAttribute(resolved, textEncodingAttributeName).value_or("");
  auto text = encoding ? readTextAs(content->bytes, *encoding) : readText(std::move(content->bytes), attribute, locale);
  if (!text) return withPath(text.error(), resolved);
  const bool isWritable = ::access(resolved.c_str(), W_OK) == 0;
  LoadedScript script{.path = resolved,
                      .text = std::move(text->text),
                      .encoding = text->encoding,
                      .state = std::move(content->state),
                      .protection = !text->isExact ? Protection::UnknownEncoding
                                    : isWritable   ? Protection::None
                                                   : Protection::NotWritable};
  script.syntax = SyntaxHelper::createSyntaxType(URL::file(resolved), script.text);
  script.form = TextForm::of(script.text);
  return script;
}

Result<FileState> stateOf(const fs::path& path) {
  auto content = readContent(path);
  if (content) return std::move(content->state);
  if (content.error().code == Error::Code::NotFound) return FileState{.digest = {}, .isLink = isLink(path)};
  return content.error();
}

Result<FileState> stateOf(int file, std::string_view content, const fs::path& path) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return systemError(errno, "read", path.string());
  auto digest = sha256(content);
  if (!digest) return Error{.code = Error::Code::Io, .message = "can’t compute its checksum", .file = path.string()};
  return FileState{.device = status.st_dev,
                   .inode = status.st_ino,
                   .mode = static_cast<mode_t>(status.st_mode & 07777U),
                   .digest = *std::move(digest),
                   .isLink = isLink(path)};
}

Result<FileState> setExecutable(const fs::path& path, bool isExecutable) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return systemError(errno, "change the mode of", path.string());
  const auto readers = (static_cast<unsigned>(status.st_mode) & 0444U) >> 2U;
  const auto bits = static_cast<unsigned>(status.st_mode) & 07777U;
  const mode_t mode = isExecutable ? bits | readers | S_IXUSR : bits & ~0111U;
  if (::chmod(path.c_str(), mode) != 0) return systemError(errno, "change the mode of", path.string());
  return FileState{.device = status.st_dev, .inode = status.st_ino, .mode = mode, .digest = {}};
}

}  // namespace mirvel
