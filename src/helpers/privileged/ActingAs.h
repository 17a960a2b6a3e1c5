#pragma once

#include <sys/types.h>

#include <vector>

namespace mirvel {

/// Replaces root's rights by those of a user during the object's life, so that the file system itself decides what is
/// permitted. A path that a user supplies can therefore lead, by links or races, only to files that the user could have
/// changed anyway.
///
/// Affects only the thread that creates the object, which must also destroy it; root's rights remain in all other
/// threads. A thread or process that is started meanwhile inherits the user's rights. The supplementary groups are
/// reduced to the user's primary group.
class ActingAs {
 public:
  explicit ActingAs(uid_t user);
  /// Aborts the program if root's rights can't be restored, because it would continue with the wrong ones.
  ~ActingAs();
  ActingAs(const ActingAs&) = delete;
  ActingAs& operator=(const ActingAs&) = delete;

  /// Whether the rights have been replaced. If not, the object must not be used for access.
  explicit operator bool() const { return m_isActing; }

 private:
  std::vector<gid_t> m_groups;
  gid_t m_group;
  uid_t m_user;
  bool m_isOther;  ///< not the user of the process, so that there is something to restore
  bool m_isActing;
};

}  // namespace mirvel
