#pragma once

#include <sys/types.h>

#include "core/files/ReplaceFile.h"
#include "core/ports/Console.h"
#include "core/process/FileDescriptor.h"
#include "helpers/jobfiles/JobFiles.h"
#include "helpers/jobfiles/JobFolders.h"
#include "helpers/privileged/RemovableItems.h"

namespace mirvel {

/// Files as root may change them for somebody else: regular files directly in the job folders, whatever they are
/// called, or in a folder of their own there, or at the end of a symbolic link that lies there. Startup items and
/// helper tools can be removed. Nobody but root may be able to change any folder on the way, and no path may go by a
/// link; each is opened folder by folder, so that nothing can be exchanged between a check and what follows it. What is
/// written is root's, and only daemons are loaded: agents run in the sessions of users. Files of the user's own job
/// folder can be removed, with the user's rights, which a move out of it needs. Everything else is refused with
/// `NotPermitted` or `BadArgument`, and a line in the log.
class GuardedJobFiles final : public JobFiles {
 public:
  /// Whose job folders files may be moved out of.
  struct User {
    uid_t id;
    JobFolders folders;
    std::optional<gid_t> group = {};  ///< private to the user, see `privateGroupOf`
  };

  GuardedJobFiles(JobFolders folders, Console& console, std::optional<User> user = {}, RemovableItems removable = {})
      : m_folders(std::move(folders)), m_console(console), m_user(std::move(user)), m_removable(std::move(removable)) {}

  Result<void> admit(const std::filesystem::path& file) override;
  Result<void> admitRemoval(const std::filesystem::path& file) override;
  Result<void> admitLoad(const std::filesystem::path& file) override;
  bool isForJobs(const std::filesystem::path& file) const override;
  Result<void> write(const std::filesystem::path& file, std::string_view content, mode_t mostOpen) override;
  Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to, std::string_view content,
                    mode_t mostOpen) override;
  Result<void> remove(const std::filesystem::path& file) override;
  Result<std::string> read(const std::filesystem::path& file) override;

 private:
  enum class Missing { Refuse, Make };

  bool isUsers(const std::filesystem::path& file) const;
  bool isForDaemons(const std::filesystem::path& file) const;
  bool mayHide(mode_t mostOpen) const;
  OwnerAndMode newFile(mode_t mostOpen) const;
  Result<void> admitIn(const FileDescriptor& folder, const std::filesystem::path& file) const;
  Result<void> removeItem(const std::filesystem::path& item) const;
  Result<void> removeFrom(int folder, const std::filesystem::path& file) const;
  Result<void> removeAsUser(const std::filesystem::path& file) const;
  static bool isTargetOfLink(const std::filesystem::path& file, const JobFolders& folders);
  Result<void> checkPlace(const std::filesystem::path& file) const;
  Result<FileDescriptor> folderOf(const std::filesystem::path& file, Missing missing) const;
  Result<std::string> readIn(int folder, const std::filesystem::path& file) const;
  template <typename T>
  Result<T> logged(Result<T> result) const;

  JobFolders m_folders;
  Console& m_console;
  std::optional<User> m_user;
  RemovableItems m_removable;
};

}  // namespace mirvel
