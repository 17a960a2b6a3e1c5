#pragma once

#include <sys/types.h>

#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Gives up root's rights for a user's while it lives, so that the file system itself judges what may be done. Only the
/// thread that creates it is affected, which must destroy it, too; a thread that is started meanwhile inherits the
/// rights.
class ActingAs {
 public:
  explicit ActingAs(uid_t user);
  /// Aborts if root's rights can't be restored, rather than going on with the wrong ones.
  ~ActingAs();
  ActingAs(const ActingAs&) = delete;
  ActingAs& operator=(const ActingAs&) = delete;

  /// Whether the rights are the user's now.
  explicit operator bool() const { return m_isActing; }

 private:
  std::vector<gid_t> m_groups;
  gid_t m_group;
  uid_t m_user;
  bool m_isOther;  ///< another user than that of the process
  bool m_isActing;
};

}  // namespace mirvel
