#include "core/editor/NotesStore.h"

#include <system_error>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestStore = std::size_t{64} << 20U;

/// None if the file holds anything but a dictionary.
std::optional<plist::Dictionary> readNotes(const std::string& bytes) {
  const auto document = plist::read(bytes);
  if (!document) return std::nullopt;
  plist::Value value = document->value();
  auto* dictionary = value.as<plist::Dictionary>();
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

/// A damaged store makes room for a new one, and may still be mended by hand.
bool setAside(const fs::path& file) {
  fs::path damaged = file;
  damaged += ".damaged";
  std::error_code failure;
  fs::rename(file, damaged, failure);
  return !failure;
}

/// The path of the job's file. What isn't UTF-8 in it can't stand in a property list, and is told by its numbers.
std::string keyOf(const URL& job) {
  const std::string path = job.text();
  if (plist::isUtf8(path)) return path;
  constexpr std::string_view digits = "0123456789abcdef";
  std::string key;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      key += character;
    } else {
      key.append({'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]});
    }
  }
  return key;
}

}  // namespace

NotesStore::NotesStore(const fs::path& folder, MainQueue& queue) : m_file(folder / "Notes.plist"), m_delay(queue) {}

NotesStore::~NotesStore() {
  if (m_changes > 0) save();
}

plist::Dictionary& NotesStore::store() const {
  if (m_notes) return *m_notes;
  const auto bytes = readFile(m_file, largestStore);
  m_notes = bytes ? readNotes(*bytes) : std::nullopt;
  const bool isThere = bytes || bytes.error().code != Error::Code::NotFound;
  m_canSave = m_notes || !isThere || setAside(m_file);
  if (!m_notes) m_notes.emplace();
  return *m_notes;
}

std::string NotesStore::note(const URL& job) const {
  const plist::Value* const note = store().find(keyOf(job));
  const auto* const text = note ? note->as<std::string>() : nullptr;
  return text ? *text : std::string();
}

void NotesStore::setNote(const URL& job, std::string text) {
  constexpr double interval = 0.3;
  store().set(keyOf(job), std::move(text));
  m_delay(interval, [this, change = ++m_changes] {
    if (change == m_changes) save();
  });
}

void NotesStore::save() {
  m_changes = 0;
  if (!m_canSave) return;
  const auto text = plist::writeXml(store());
  if (!text) return;
  std::error_code failure;
  fs::create_directories(m_file.parent_path(), failure);
  (void)replaceFile(m_file, *text);
}

}  // namespace mirvel
