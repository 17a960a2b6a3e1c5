#include "helpers/jobfiles/NotedJobFiles.h"

#include <sys/stat.h>

#include <utility>

#include "core/catalogue/Checksum.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// Whether a file isn't readable by everybody. A file that doesn't exist yet gets at most the mode `mostOpen`.
bool isPrivate(const fs::path& file, mode_t mostOpen) {
  struct stat status {};
  const bool exists = ::stat(file.c_str(), &status) == 0;
  return ((exists ? status.st_mode : mostOpen) & S_IROTH) == 0;
}

}  // namespace

Result<void> NotedJobFiles::write(const fs::path& file, std::string_view content, mode_t mostOpen) {
  const Noted note = noteContent(file, content, isPrivate(file, mostOpen));
  return settled(m_files.write(file, content, mostOpen), {note});
}

Result<void> NotedJobFiles::move(const fs::path& from, const fs::path& to, std::string_view content, mode_t mostOpen) {
  const Noted removal = noteRemoval(from);
  const Noted note = noteContent(to, content, isPrivate(from, mostOpen) || isPrivate(to, mostOpen));
  return settled(m_files.move(from, to, content, mostOpen), {removal, note});
}

Result<void> NotedJobFiles::remove(const fs::path& file) {
  const Noted note = noteRemoval(file);
  return settled(m_files.remove(file), {note});
}

NotedJobFiles::Noted NotedJobFiles::noteContent(const fs::path& file, std::string_view content,
                                                bool isPrivateFile) const {
  return add(
      {.user = m_user, .path = file, .checksum = isPrivateFile ? std::string() : Checksum::ofFile(content).text()});
}

NotedJobFiles::Noted NotedJobFiles::noteRemoval(const fs::path& file) const {
  return add({.user = m_user, .path = file, .isRemoval = true});
}

NotedJobFiles::Noted NotedJobFiles::add(ChangeNote note) const {
  const auto number = m_notes.add(std::move(note));
  return number ? Noted(*number) : std::nullopt;
}

/// Withdraws the notes of a change that has failed.
Result<void> NotedJobFiles::settled(Result<void> result, std::initializer_list<Noted> notes) const {
  for (const Noted& note : notes) {
    if (!result && note) (void)m_notes.withdraw(*note);  // at worst, such a change isn't announced
  }
  return result;
}

}  // namespace mirvel
