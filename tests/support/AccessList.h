#pragma once

#ifdef __linux__

#include <sys/xattr.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace mirvel::testdata {

/// The permissions of an access list (acl(5)), in the bits of a mode.
struct AccessList {
  std::uint16_t owner, user, group, mask, others;

  /// Sets the list on the file, with an entry for the user. Returns false if the file system has no such lists.
  bool setOn(const std::filesystem::path& file, std::uint32_t userNumber) const {
    const struct {
      std::uint16_t tag, rights;
      std::uint32_t number;
    } entries[] = {{1, owner, ~0U}, {2, user, userNumber}, {4, group, ~0U}, {16, mask, ~0U}, {32, others, ~0U}};
    std::string list{2, 0, 0, 0};  // version of the kernel's format
    list.append(reinterpret_cast<const char*>(entries), sizeof entries);
    return ::setxattr(file.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) == 0;
  }
};

}  // namespace mirvel::testdata

#endif
