#include "core/notifications/ChangeNotes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <utility>

#include "core/files/FileTrust.h"
#include "core/files/FolderLock.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/files/ReplaceFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

namespace fs = std::filesystem;
using propertylist::Dictionary;

namespace {

constexpr std::size_t largestFile = std::size_t{4} << 20U;
constexpr std::size_t longestPath = 4096;
constexpr std::int64_t largestNumber = std::int64_t{1} << 53U;  // the year 2255, in microseconds

struct NoteKey {
  static constexpr const char* notes = "Notes";
  static constexpr const char* number = "Number";
  static constexpr const char* user = "User";
  static constexpr const char* path = "Path";
  static constexpr const char* removal = "Removal";
  static constexpr const char* checksum = "Checksum";
};

std::optional<std::int64_t> integerIn(const Dictionary& entry, const char* key) {
  const auto* const number = entry.get<propertylist::Integer>(key);
  return number ? number->toInt64() : std::nullopt;
}

std::optional<ChangeNote> noteIn(const propertylist::Value& value) {
  const auto* const entry = value.as<Dictionary>();
  if (!entry) return std::nullopt;
  const auto number = integerIn(*entry, NoteKey::number), user = integerIn(*entry, NoteKey::user);
  const auto* const path = entry->get<propertylist::Data>(NoteKey::path);
  const auto* const isRemoval = entry->get<bool>(NoteKey::removal);
  const auto* const checksum = entry->get<std::string>(NoteKey::checksum);
  const bool isUser = user && *user >= 0 && *user < std::numeric_limits<std::uint32_t>::max();
  if (!number || *number <= 0 || *number > largestNumber || !isUser || !isRemoval || !checksum) return std::nullopt;
  if (!path || !path->bytes.starts_with('/') || path->bytes.size() > longestPath) return std::nullopt;
  return ChangeNote{.number = *number,
                    .user = static_cast<uid_t>(*user),
                    .path = path->bytes,
                    .isRemoval = *isRemoval,
                    .checksum = *checksum};
}

std::int64_t microsecondsNow() {
  using namespace std::chrono;
  return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

/// Creates the missing folders of a path, open to everybody whatever the umask is.
Result<void> makePublicFolder(const fs::path& folder) {
  fs::path path;
  for (const fs::path& part : folder) {
    path /= part;
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0) continue;
    constexpr mode_t mode = 0755;
    if (::mkdir(path.c_str(), mode) != 0 && errno != EEXIST) return systemError(errno, "create the folder", path);
    if (::chmod(path.c_str(), mode) != 0) return systemError(errno, "set the mode of", path);
  }
  return {};
}

}  // namespace

Result<std::vector<ChangeNote>> readChangeNotes(std::string_view bytes) {
  const auto list = propertylist::readDictionary(bytes);
  if (!list) return list.error();
  std::vector<ChangeNote> notes;
  if (const auto* const entries = list->get<propertylist::Array>(NoteKey::notes)) {
    for (const auto& entry : *entries) {
      if (auto note = noteIn(entry)) notes.push_back(*std::move(note));
    }
  }
  return notes;
}

std::string writeChangeNotes(const std::vector<ChangeNote>& notes) {
  propertylist::Array entries;
  for (const ChangeNote& note : notes) {
    entries.emplace_back(Dictionary{{NoteKey::number, note.number},
                                    {NoteKey::user, static_cast<std::int64_t>(note.user)},
                                    {NoteKey::path, propertylist::Data{note.path.native()}},
                                    {NoteKey::removal, note.isRemoval},
                                    {NoteKey::checksum, note.checksum}});
  }
  return propertylist::writeBinary(Dictionary{{NoteKey::notes, std::move(entries)}});
}

Result<std::int64_t> ChangeNotes::add(ChangeNote note) const {
  if (auto made = makeFolder(); !made) return made.error();
  const FileDescriptor held = lock();
  auto notes = present();
  // Numbers grow even if the clock is set back.
  note.number = std::max(microsecondsNow(), notes.empty() ? 0 : notes.back().number + 1);
  const std::int64_t number = note.number;
  notes.push_back(std::move(note));
  if (notes.size() > most) notes.erase(notes.begin(), notes.end() - most);
  if (auto written = write(notes); !written) return written.error();
  return number;
}

Result<void> ChangeNotes::withdraw(std::int64_t number) const {
  const FileDescriptor held = lock();
  auto notes = present();
  if (std::erase_if(notes, [&](const ChangeNote& note) { return note.number == number; }) == 0) return {};
  return write(notes);
}

Result<std::vector<ChangeNote>> ChangeNotes::read(uid_t reader) const {
  const auto file = RegularFile::open(m_file);
  if (!file && file.error().code == Error::Code::NotFound) return std::vector<ChangeNote>();
  if (!file) return file.error();
  const int descriptor = file->descriptor.number();
  if (auto trusted = checkTrust(m_file, descriptor, reader); !trusted) return trusted.error();
  const auto bytes = readFile(descriptor, largestFile, m_file);
  return bytes ? readChangeNotes(*bytes) : bytes.error();
}

Result<void> ChangeNotes::makeFolder() const {
  const fs::path folder = m_file.parent_path();
  return m_readers == Readers::User ? makePrivateFolder(folder) : makePublicFolder(folder);
}

/// Not on the folder, which everybody may be able to open.
FileDescriptor ChangeNotes::lock() const {
  return lockFile(fs::path(m_file).replace_extension("lock"));
}

std::vector<ChangeNote> ChangeNotes::present() const {
  const auto bytes = readFile(m_file, largestFile);
  auto notes = bytes ? readChangeNotes(*bytes) : Result<std::vector<ChangeNote>>(bytes.error());
  return notes ? *std::move(notes) : std::vector<ChangeNote>();
}

Result<void> ChangeNotes::write(const std::vector<ChangeNote>& notes) const {
  const bool isPrivate = m_readers == Readers::User;
  if (auto written = replaceFile(m_file, writeChangeNotes(notes), isPrivate ? privateFile : newFileMode); !written) {
    return written;
  }
  // The umask may have removed rights of a new file.
  if (!isPrivate && ::chmod(m_file.c_str(), newFileMode) != 0) return systemError(errno, "set the mode of", m_file);
  return {};
}

}  // namespace mirvel
