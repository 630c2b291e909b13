// The file interface the library reads and writes through. Every call returns 0 on success or
// the errno value of the failing system call, so callers build their own messages around it.
// Default() is the POSIX implementation; tests swap in a memory file system, or a wrapper that
// fails on demand, with SetCurrent().
#ifndef OVXMLLIB6_SRC_PORT_FILE_H
#define OVXMLLIB6_SRC_PORT_FILE_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace OvXmlLib6 {
namespace port {

class IReadFile {
 public:
  virtual ~IReadFile() = default;
  virtual int Size(std::uint64_t& size) = 0;
  // Reads up to `n` bytes, retrying short reads and interruptions until `n` bytes or the end of
  // the file; `got` is the count read (0 at the end of the file).
  virtual int Read(void* buffer, std::size_t n, std::size_t& got) = 0;
};

class IWriteFile {
 public:
  virtual ~IWriteFile() = default;
  // Writes all `n` bytes or fails.
  virtual int Write(const void* data, std::size_t n) = 0;
  // Closes the file; further calls fail. The destructor closes a file that is still open.
  virtual int Close() = 0;
};

class IFileSystem {
 public:
  virtual ~IFileSystem() = default;
  // Opens an existing file for reading.
  virtual int OpenRead(const char* path, std::unique_ptr<IReadFile>& file) = 0;
  // Creates the file anew (truncating one that exists) for writing.
  virtual int Create(const char* path, std::unique_ptr<IWriteFile>& file) = 0;

  // The POSIX file system.
  static IFileSystem& Default();
  // The file system the library uses now: Default() unless a test installed another.
  static IFileSystem& Current();
  // Installs `fs` as the current file system; null restores Default(). Not thread-safe: tests
  // set it before any file I/O starts.
  static void SetCurrent(IFileSystem* fs);
};

// A file system held in memory, for tests: files are created, read and overwritten like real ones.
std::unique_ptr<IFileSystem> NewMemoryFileSystem();

}  // namespace port
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_PORT_FILE_H
