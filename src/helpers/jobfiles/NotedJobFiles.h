#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>

#include "core/notifications/ChangeNotes.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

/// Notes each change of job files before it is made, so that the background agent of the user doesn't announce it. The
/// note of a change that fails is withdrawn. A note that can't be written only means that the change is announced.
class NotedJobFiles final : public JobFiles {
 public:
  /// Notes the changes of `files` for a user. `notesFor` returns the record for a file; null if its changes aren't
  /// noted, because it isn't in a folder that agents watch. Both must outlive this.
  using NotesFor = std::function<const ChangeNotes*(const std::filesystem::path& file)>;
  NotedJobFiles(JobFiles& files, uid_t user, NotesFor notesFor)
      : m_files(files), m_user(user), m_notesFor(std::move(notesFor)) {}

  Result<void> admit(const std::filesystem::path& file) override { return m_files.admit(file); }
  Result<void> admitRemoval(const std::filesystem::path& file) override { return m_files.admitRemoval(file); }
  Result<void> admitLoad(const std::filesystem::path& file) override { return m_files.admitLoad(file); }
  bool isForJobs(const std::filesystem::path& file) const override { return m_files.isForJobs(file); }
  Result<void> write(const std::filesystem::path& file, std::string_view content, mode_t mostOpen) override;
  Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to, std::string_view content,
                    mode_t mostOpen) override;
  Result<void> remove(const std::filesystem::path& file) override;
  Result<std::string> read(const std::filesystem::path& file) override { return m_files.read(file); }

 private:
  /// A note that is withdrawn unless the change succeeds.
  struct Noted {
    const ChangeNotes* notes = nullptr;
    std::int64_t number = 0;
  };

  Noted noteContent(const std::filesystem::path& file, std::string_view content, bool isPrivate) const;
  Noted noteRemoval(const std::filesystem::path& file) const;
  Noted add(ChangeNote note) const;
  static Result<void> settled(Result<void> result, std::initializer_list<Noted> notes);

  JobFiles& m_files;
  uid_t m_user;
  NotesFor m_notesFor;
};

}  // namespace mirvel
