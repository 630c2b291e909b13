#include "port/File.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace OvXmlLib6 {
namespace port {

namespace {

#ifndef O_CLOEXEC
#define O_CLOEXEC 0
#endif

class PosixReadFile : public IReadFile {
 public:
  explicit PosixReadFile(int fd) : m_fd(fd) {}
  ~PosixReadFile() override { ::close(m_fd); }

  int Size(std::uint64_t& size) override {
    struct stat st;
    if (::fstat(m_fd, &st) != 0) return errno;
    size = static_cast<std::uint64_t>(st.st_size);
    return 0;
  }

  int Read(void* buffer, std::size_t n, std::size_t& got) override {
    got = 0;
    auto* out = static_cast<char*>(buffer);
    while (got < n) {
      const ssize_t r = ::read(m_fd, out + got, n - got);
      if (r < 0) {
        if (errno == EINTR) continue;
        return errno;
      }
      if (r == 0) break;
      got += static_cast<std::size_t>(r);
    }
    return 0;
  }

 private:
  int m_fd;
};

class PosixWriteFile : public IWriteFile {
 public:
  explicit PosixWriteFile(int fd) : m_fd(fd) {}
  ~PosixWriteFile() override { Close(); }

  int Write(const void* data, std::size_t n) override {
    if (m_fd < 0) return EBADF;
    const auto* in = static_cast<const char*>(data);
    while (n > 0) {
      const ssize_t w = ::write(m_fd, in, n);
      if (w < 0) {
        if (errno == EINTR) continue;
        return errno;
      }
      in += w;
      n -= static_cast<std::size_t>(w);
    }
    return 0;
  }

  int Close() override {
    if (m_fd < 0) return EBADF;
    const int result = ::close(m_fd) == 0 ? 0 : errno;
    m_fd = -1;
    return result;
  }

 private:
  int m_fd;
};

class PosixFileSystem : public IFileSystem {
 public:
  int OpenRead(const char* path, std::unique_ptr<IReadFile>& file) override {
    int fd;
    do {
      fd = ::open(path, O_RDONLY | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) return errno;
    struct stat st;
    if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
      ::close(fd);
      return EISDIR;
    }
#if defined(POSIX_FADV_SEQUENTIAL)
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);  // a hint only; failure does not matter
#endif
    file.reset(new PosixReadFile(fd));
    return 0;
  }

  int Create(const char* path, std::unique_ptr<IWriteFile>& file) override {
    int fd;
    do {
      fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) return errno;
    file.reset(new PosixWriteFile(fd));
    return 0;
  }
};

// Memory file system: contents live in a map shared by the open files.
class MemoryFileSystem : public IFileSystem {
 public:
  int OpenRead(const char* path, std::unique_ptr<IReadFile>& file) override {
    std::lock_guard<std::mutex> guard(m_mutex);
    const auto it = m_files.find(path);
    if (it == m_files.end()) return ENOENT;
    file.reset(new Reader(it->second));
    return 0;
  }

  int Create(const char* path, std::unique_ptr<IWriteFile>& file) override {
    if (path == nullptr || *path == '\0') return ENOENT;
    auto content = std::make_shared<std::string>();
    std::lock_guard<std::mutex> guard(m_mutex);
    m_files[path] = content;
    file.reset(new Writer(content));
    return 0;
  }

 private:
  class Reader : public IReadFile {
   public:
    explicit Reader(std::shared_ptr<std::string> content) : m_content(std::move(content)) {}
    int Size(std::uint64_t& size) override {
      size = m_content->size();
      return 0;
    }
    int Read(void* buffer, std::size_t n, std::size_t& got) override {
      got = m_position < m_content->size() ? std::min(n, m_content->size() - m_position) : 0;
      if (got != 0) m_content->copy(static_cast<char*>(buffer), got, m_position);
      m_position += got;
      return 0;
    }

   private:
    std::shared_ptr<std::string> m_content;
    std::size_t m_position = 0;
  };

  class Writer : public IWriteFile {
   public:
    explicit Writer(std::shared_ptr<std::string> content) : m_content(std::move(content)) {}
    int Write(const void* data, std::size_t n) override {
      if (m_closed) return EBADF;
      m_content->append(static_cast<const char*>(data), n);
      return 0;
    }
    int Close() override {
      if (m_closed) return EBADF;
      m_closed = true;
      return 0;
    }

   private:
    std::shared_ptr<std::string> m_content;
    bool m_closed = false;
  };

  std::mutex m_mutex;
  std::map<std::string, std::shared_ptr<std::string>> m_files;
};

IFileSystem* g_current = nullptr;

}  // namespace

IFileSystem& IFileSystem::Default() {
  static PosixFileSystem fs;
  return fs;
}

IFileSystem& IFileSystem::Current() { return g_current != nullptr ? *g_current : Default(); }

void IFileSystem::SetCurrent(IFileSystem* fs) { g_current = fs; }

std::unique_ptr<IFileSystem> NewMemoryFileSystem() {
  return std::unique_ptr<IFileSystem>(new MemoryFileSystem());
}

}  // namespace port
}  // namespace OvXmlLib6
