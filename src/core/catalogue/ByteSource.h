#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Random access to bytes, for large files of which only a little is needed.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// In bytes; constant for the lifetime of the source.
  virtual std::uint64_t size() const = 0;
  /// Reads exactly `count` bytes at `offset`. The range must be within `size()`.
  virtual Result<std::string> read(std::uint64_t offset, std::size_t count) = 0;

 protected:
  ByteSource() = default;
  ByteSource(ByteSource&&) = default;
  ByteSource& operator=(ByteSource&&) = default;
};

/// Bytes in memory, which must outlive this.
class MemoryBytes : public ByteSource {
 public:
  explicit MemoryBytes(std::string_view bytes) : m_bytes(bytes) {}

  std::uint64_t size() const override { return m_bytes.size(); }
  Result<std::string> read(std::uint64_t offset, std::size_t count) override;

 private:
  std::string_view m_bytes;
};

/// A regular file, kept open.
class FileBytes : public ByteSource {
 public:
  /// Follows links. Anything but a regular file is rejected with `Malformed`, without blocking on pipes or devices.
  static Result<FileBytes> open(const std::filesystem::path& path);

  /// The size when the file was opened. `read` fails with `Io` if the file has been truncated since.
  std::uint64_t size() const override { return m_size; }
  Result<std::string> read(std::uint64_t offset, std::size_t count) override;

 private:
  FileBytes(FileDescriptor file, std::uint64_t size, std::string path);

  FileDescriptor m_file;
  std::uint64_t m_size;
  std::string m_path;
};

}  // namespace mirvel
