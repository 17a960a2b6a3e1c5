#include "core/documents/RecoveryCopies.h"

#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include "core/files/ReplaceFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Value.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

using propertylist::Data;
using propertylist::Dictionary;

constexpr std::size_t largestCopy = 4 * largestScript;  // a byte can become three of UTF-8
constexpr const char* copyExtension = ".copy";
constexpr const char* pathKey = "Path";
constexpr const char* encodingKey = "Encoding";
constexpr const char* markKey = "ByteOrderMark";
constexpr const char* digestKey = "Checksum";
constexpr const char* modeKey = "Mode";
constexpr const char* textKey = "Text";

/// Text and path needn't be UTF-8, so they are data.
std::string encoded(const RecoveryCopy& copy) {
  return propertylist::writeBinary(Dictionary{{pathKey, Data{copy.path.native()}},
                                              {encodingKey, copy.encoding.name},
                                              {markKey, copy.encoding.hasMark},
                                              {digestKey, Data{copy.base.digest}},
                                              {modeKey, static_cast<std::int64_t>(copy.base.mode)},
                                              {textKey, Data{copy.text}}});
}

Result<RecoveryCopy> decoded(const fs::path& file) {
  const auto content = propertylist::readDictionary(file, largestCopy);
  if (!content) return content.error();
  const auto* const path = content->get<Data>(pathKey);
  const auto* const encoding = content->get<std::string>(encodingKey);
  const auto* const mark = content->get<bool>(markKey);
  const auto* const digest = content->get<Data>(digestKey);
  const auto* const mode = content->get<propertylist::Integer>(modeKey);
  const auto* const text = content->get<Data>(textKey);
  if (!path || !encoding || !mark || !digest || !mode || !text) {
    return Error{.code = Error::Code::Malformed, .message = "it isn’t a copy of a script", .file = file};
  }
  // Not within the copy, where g++ 12 with -O3 takes it for uninitialized.
  FileState base{.mode = static_cast<mode_t>(mode->bits() & 07777U), .digest = digest->bytes};
  return RecoveryCopy{.id = file.stem().string(),
                      .path = path->bytes,
                      .encoding = {.name = *encoding, .hasMark = *mark},
                      .base = std::move(base),
                      .text = text->bytes};
}

/// The error with the path at which the file is afterwards.
Error setAside(const fs::path& file, Error error) {
  error.file = file;
  if (error.code != Error::Code::Malformed) return error;  // it may be readable next time
  fs::path aside = file;
  aside += ".damaged";
  std::error_code failure;
  fs::rename(file, aside, failure);
  if (!failure) error.file = aside;
  return error;
}

}  // namespace

/// The folder, and which request for each copy is the last one: an older one that is carried out later does nothing.
class RecoveryCopies::Files {
 public:
  explicit Files(fs::path folder) : m_folder(std::move(folder)) {}

  const fs::path& folder() const { return m_folder; }

  int begin(const std::string& id) {
    const std::lock_guard lock(m_mutex);
    return ++m_last[id];
  }
  Result<void> write(const RecoveryCopy& copy, int request) {
    const std::lock_guard lock(m_fileMutex);
    if (!isLast(copy.id, request)) return {};
    if (auto made = makePrivateFolder(m_folder); !made) return made;
    return replaceFile(file(copy.id), encoded(copy), privateFile);
  }
  void remove(const std::string& id, int request) {
    const std::lock_guard lock(m_fileMutex);
    if (!isLast(id, request)) return;
    std::error_code ignored;  // at worst, the next start offers it
    fs::remove(file(id), ignored);
  }

 private:
  fs::path file(const std::string& id) const { return m_folder / (id + copyExtension); }
  bool isLast(const std::string& id, int request) {
    const std::lock_guard lock(m_mutex);
    return m_last[id] == request;
  }

  const fs::path m_folder;
  std::mutex m_fileMutex;  ///< held while a file is written, which can take a while
  std::mutex m_mutex;      ///< guards `m_last`
  std::map<std::string, int> m_last;
};

RecoveryCopies::RecoveryCopies(const fs::path& support, WorkQueue& queue)
    : m_files(std::make_shared<Files>(support / "Scripts")), m_queue(queue) {}

void RecoveryCopies::keep(std::shared_ptr<const RecoveryCopy> copy, Written written) {
  const int request = m_files->begin(copy->id);
  m_queue.add([files = m_files, request, copy = std::move(copy), written = std::move(written)] {
    written(files->write(*copy, request));
  });
}

Result<void> RecoveryCopies::keepNow(const RecoveryCopy& copy) {
  return m_files->write(copy, m_files->begin(copy.id));
}

void RecoveryCopies::remove(const std::string& id) {
  m_files->remove(id, m_files->begin(id));
}

RecoveryCopies::Left RecoveryCopies::left() const {
  Left result;
  std::error_code failure;
  fs::directory_iterator entry(m_files->folder(), failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    const fs::path file = entry->path();
    if (file.extension() != copyExtension) continue;
    if (auto copy = decoded(file)) {
      result.copies.push_back(*std::move(copy));
    } else {
      result.failures.push_back(setAside(file, copy.error()));
    }
  }
  return result;
}

}  // namespace mirvel
