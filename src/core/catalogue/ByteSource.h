#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Bytes that are read here and there, such as those of a large file of which little is needed.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  virtual std::uint64_t size() const = 0;
  /// Exactly `count` bytes from `offset` on. The caller asks for none beyond `size()`.
  virtual Result<std::string> read(std::uint64_t offset, std::size_t count) = 0;

 protected:
  ByteSource() = default;
  ByteSource(ByteSource&&) = default;
  ByteSource& operator=(ByteSource&&) = default;
};

/// Bytes in memory, which the caller keeps.
class MemoryBytes : public ByteSource {
 public:
  explicit MemoryBytes(std::string_view bytes) : m_bytes(bytes) {}

  std::uint64_t size() const override { return m_bytes.size(); }
  Result<std::string> read(std::uint64_t offset, std::size_t count) override;

 private:
  std::string_view m_bytes;
};

/// A regular file.
class FileBytes : public ByteSource {
 public:
  /// Anything but a regular file, or a link to one, is refused with `Malformed`, and nothing waits for its other end.
  static Result<FileBytes> open(const std::filesystem::path& path);

  /// The size at the time of opening. Reading fails with `Io` if the file has become shorter since.
  std::uint64_t size() const override { return m_size; }
  Result<std::string> read(std::uint64_t offset, std::size_t count) override;

 private:
  FileBytes(FileDescriptor file, std::uint64_t size, std::string path);

  FileDescriptor m_file;
  std::uint64_t m_size;
  std::string m_path;
};

}  // namespace mirvel
