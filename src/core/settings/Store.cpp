#include "core/settings/Store.h"

#include <fcntl.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "core/files/FolderLock.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/files/ReplaceFile.h"
#include "core/process/FileDescriptor.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Ascii.h"
#include "core/text/Bytes.h"

namespace mirvel {

void StoreTroubles::report(StoreTrouble trouble) {
  if (m_listener) return m_listener(trouble);
  m_waiting.push_back(std::move(trouble));
}

void StoreTroubles::setListener(Listener listener) {
  m_listener = std::move(listener);
  if (!m_listener) return;
  for (const StoreTrouble& trouble : std::exchange(m_waiting, {})) m_listener(trouble);
}

namespace fs = std::filesystem;

namespace {

/// All zeros if there is no file.
struct stat statusOf(const fs::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  return status;
}

bool sameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// Whether a file is unchanged. The change time can't be set by programs, unlike the modification time, so even a file
/// of the same size that was written in place is detected.
bool sameVersion(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         sameTime(modificationTime(a), modificationTime(b)) && sameTime(changeTime(a), changeTime(b));
}

/// Reserves an unused name by creating an empty file, so that no rescue copy is ever overwritten.
Result<fs::path> reserveName(const fs::path& path) {
  constexpr int mostNames = 10000;  // rather than searching forever
  for (int number = 1; number < mostNames; ++number) {
    fs::path name = path;
    name += ".damaged-" + std::to_string(number);
    const FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file) return name;
    if (errno != EEXIST) return systemError(errno, "move the damaged file aside", path.string());
  }
  return systemError(EEXIST, "move the damaged file aside", path.string());
}

/// Whether the bytes are a list that is read as this value.
bool isReadAs(std::string_view bytes, const propertylist::Value& value) {
  const auto document = propertylist::read(bytes);
  return document && document->value() == value;
}

/// XML, which can be repaired by hand, unless reading it would not give the same value, as with fractions of a second.
std::string bytesOf(const propertylist::Dictionary& dictionary) {
  auto xml = propertylist::writeXml(dictionary);
  return xml && isReadAs(*xml, dictionary) ? *std::move(xml) : propertylist::writeBinary(dictionary);
}

}  // namespace

const propertylist::Dictionary& Store::contents() {
  if (!m_loaded || !sameVersion(*m_loaded, statusOf(m_path))) {
    (void)read();  // has reported why the contents are empty
    applyChanges();
  }
  return m_contents;
}

Result<void> Store::refresh() {
  auto result = read();
  applyChanges();
  return result;
}

void Store::put(const std::string& key, std::optional<propertylist::Value> value) {
  m_changes[key].clear();
  update(key, [value = std::move(value)](const propertylist::Value*) { return value; });
}

void Store::update(const std::string& key, Edit edit) {
  apply(key, edit);
  m_changes[key].push_back(std::move(edit));
}

Result<void> Store::set(const std::string& key, std::optional<propertylist::Value> value) {
  put(key, std::move(value));
  return write();
}

/// Applies all changes to what has been read. Returns whether they make a difference.
bool Store::applyChanges() {
  bool isChanged = false;
  for (const auto& [key, edits] : m_changes) {
    for (const Edit& edit : edits) isChanged = apply(key, edit) || isChanged;
  }
  return isChanged;
}

bool Store::apply(const std::string& key, const Edit& edit) {
  const propertylist::Value* const old = std::as_const(m_contents).find(key);
  auto value = edit(old);
  if (value ? old && *old == *value : !old) return false;
  if (value) {
    m_contents.set(key, *std::move(value));
  } else {
    m_contents.remove(key);
  }
  return true;
}

Result<void> Store::write() {
  const FileDescriptor lock = lockFolder(m_path.parent_path());
  return writeLocked();
}

Result<void> Store::writeLocked() {
  auto result = read(Lock::Held);
  const bool isChanged = applyChanges();
  if (!result) return result;
  if (isChanged) {
    m_loaded.reset();  // also after a failure: the file may have been replaced nevertheless
    if (auto written = replace(); !written) {
      report(StoreTrouble::Kind::Unwritten, written.error(), m_reportedWriting);
      return written;
    }
    m_reportedWriting.clear();
  }
  m_changes.clear();
  return {};
}

Result<void> Store::replace() {
  if (auto made = makePrivateFolder(m_path.parent_path()); !made) return made;
  const std::string bytes = bytesOf(m_contents);
  if (bytes.size() > largestFile) {
    return Error{.code = Error::Code::LimitExceeded, .message = "it would become too large", .file = m_path.string()};
  }
  // Private, since it may contain parts of files that only the user can read.
  return replaceFile(m_path, bytes, privateFile);
}

Result<void> Store::clear() {
  if (auto result = read(); !result) {
    applyChanges();
    return result;
  }
  std::error_code failure;
  fs::remove(m_path, failure);
  m_loaded.reset();
  if (failure) {
    auto error = systemError(failure.value(), "remove the file", m_path.string());
    report(StoreTrouble::Kind::Unwritten, error, m_reportedWriting);
    return error;
  }
  m_changes.clear();
  return {};
}

Result<void> Store::read(Lock lock) {
  m_contents = {};
  m_loaded = statusOf(m_path);  // before reading, so that a change in between is detected later
  const auto bytes = readFile(m_path, largestFile);
  Result<void> result;
  if (bytes) {
    result = load(*bytes, lock);
  } else if (bytes.error().code != Error::Code::NotFound) {
    result = bytes.error();
  }
  if (result) {
    m_reportedReading.clear();
  } else {
    report(StoreTrouble::Kind::Unread, result.error(), m_reportedReading);
  }
  return result;
}

Result<void> Store::load(const std::string& bytes, Lock lock) {
  auto dictionary = propertylist::readDictionary(bytes);
  if (dictionary) {
    m_contents = *std::move(dictionary);
    return {};
  }
  Error damage = dictionary.error();
  damage.code = Error::Code::Malformed;
  damage.file = m_path.string();
  if (m_damaged == Damaged::Leave) return damage;
  const auto isAside = moveAside(damage, lock);
  if (!isAside) return isAside.error();
  return *isAside ? Result<void>() : read(lock);  // another program has replaced it meanwhile
}

Result<bool> Store::setAside(const Error& damage, const propertylist::Dictionary& kept) {
  const FileDescriptor lock = lockFolder(m_path.parent_path());
  auto isAside = moveAside(damage, Lock::Held);
  if (!isAside || !*isAside) return isAside;
  for (const auto& entry : kept) put(entry.key, entry.value);
  (void)writeLocked();  // reports a failure, and keeps the changes
  return true;
}

/// Another program may have found the same damage: then the file is a good one by now, and must stay.
Result<bool> Store::moveAside(const Error& damage, Lock lock) {
  FileDescriptor held = lock == Lock::Free ? lockFolder(m_path.parent_path()) : FileDescriptor();
  if (m_loaded && !sameVersion(*m_loaded, statusOf(m_path))) {
    m_loaded.reset();
    return false;
  }
  m_contents = {};
  const auto name = reserveName(m_path);
  if (!name) return name.error();
  std::error_code failure;
  fs::rename(m_path, *name, failure);
  if (failure) {
    std::error_code ignored;
    fs::remove(*name, ignored);
    return systemError(failure.value(), "move the damaged file aside", m_path.string());
  }
  m_loaded.reset();
  held.reset();  // the listener may show an alert
  if (m_troubles) m_troubles->report({.kind = StoreTrouble::Kind::Damaged, .error = damage, .rescue = *name});
  return true;
}

void Store::report(StoreTrouble::Kind kind, const Error& error, std::string& reported) const {
  if (std::string text = error.text(); text != std::exchange(reported, text) && m_troubles) {
    m_troubles->report({.kind = kind, .error = error});
  }
}

std::string storeKey(const URL& url) {
  const std::string& path = url.text();
  if (propertylist::isUtf8(path)) return path;
  std::string key;
  for (const char character : path) {
    key += Ascii::holds(character) ? std::string(1, character) : "\\x" + toHex({&character, 1});
  }
  return key;
}

}  // namespace mirvel
