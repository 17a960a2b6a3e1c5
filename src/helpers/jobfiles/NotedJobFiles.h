#pragma once

#include <sys/types.h>

#include <cstdint>
#include <initializer_list>
#include <optional>

#include "core/notifications/ChangeNotes.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

/// Notes each change of job files before it is made, so that the background agent of the user doesn't announce it. The
/// note of a change that fails is withdrawn. A note that can't be written only means that the change is announced.
class NotedJobFiles final : public JobFiles {
 public:
  /// Notes the changes of `files` for a user in a record. Both must outlive this.
  NotedJobFiles(JobFiles& files, uid_t user, const ChangeNotes& notes) : m_files(files), m_user(user), m_notes(notes) {}

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
  /// The number of a note; none if it couldn't be written.
  using Noted = std::optional<std::int64_t>;

  Noted noteContent(const std::filesystem::path& file, std::string_view content, bool isPrivate) const;
  Noted noteRemoval(const std::filesystem::path& file) const;
  Noted add(ChangeNote note) const;
  Result<void> settled(Result<void> result, std::initializer_list<Noted> notes) const;

  JobFiles& m_files;
  uid_t m_user;
  const ChangeNotes& m_notes;
};

}  // namespace mirvel
