#pragma once

#include <sys/types.h>

#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Gives up root's rights for a user's while it lives, so that the file system itself judges what may be done. For
/// processes with one thread.
class ActingAs {
 public:
  explicit ActingAs(uid_t user);
  /// Ends the process if root's rights can't be had back: nothing is done with rights of another than is thought.
  ~ActingAs();
  ActingAs(const ActingAs&) = delete;
  ActingAs& operator=(const ActingAs&) = delete;

  /// Whether the rights are the user's now.
  explicit operator bool() const { return m_isActing; }

 private:
  std::vector<gid_t> m_groups;
  gid_t m_group;
  uid_t m_user;
  bool m_isActing = false;
};

}  // namespace mirvel
