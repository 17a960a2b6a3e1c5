#pragma once

#include <sys/types.h>

#include "core/files/ReplaceFile.h"
#include "core/ports/Console.h"
#include "core/process/FileDescriptor.h"
#include "helpers/jobfiles/JobFiles.h"
#include "helpers/jobfiles/JobFolders.h"
#include "helpers/privileged/RemovableItems.h"

namespace mirvel {

/// Job files that root reads and changes on behalf of a user who isn't trusted. The user may choose paths and content
/// freely, and may create links, rename files and replace folders wherever permitted, at any time. Every check below
/// stops one way of turning this into access to other files:
///
/// - Paths must be absolute, in their simplest form and without null characters, and lead directly into a job folder or
///   a folder of its own there (`JobFolders::holds`). Otherwise "..", or any other file of the system, could be named.
///   The target of a link in a job folder is accepted too: only root can have created such a link.
/// - Folders are opened by `openTrustedFolder`, and files in the descriptor of their folder. Otherwise the user could
///   replace a folder by a link between the check and the access.
/// - A file must be a regular file: opening a FIFO would block the helper, and a device has effects.
/// - A file must have only one link. Otherwise a user could have hard-linked another file of root's there, which would
///   then be read, replaced or removed under this name.
/// - A link itself is never written through: its target must be named, and is checked like any other path.
/// - A written file belongs to root, and its mode doesn't permit others to write to it, whatever it was before.
///   Otherwise its former owner could change the job after it has been checked.
/// - A private file doesn't become readable by others, since it may contain a password.
/// - Only daemons are loaded. An agent is meant to run with a user's rights, and the user may be able to replace its
///   program.
/// - Files in the user's own job folder may only be removed, as needed for a move, and with the user's rights (see
///   `ActingAs`). With root's rights, the user could replace a folder there by a link to a folder of root's.
/// - Startup items and helper tools may only be deleted (see `RemovableItems`).
///
/// Everything else is refused with `NotPermitted` or `BadArgument`, and logged.
class GuardedJobFiles final : public JobFiles {
 public:
  /// The user for whom the helper works, out of whose job folders files may be moved.
  struct User {
    uid_t id;
    JobFolders folders;
    std::optional<gid_t> group = {};  ///< the user's private group, see `privateGroupOf`
  };

  /// The console must outlive the object. Without a user, nothing can be moved out of a user's folder.
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
