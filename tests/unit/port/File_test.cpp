#include "port/File.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace OvXmlLib6::port;

namespace {

std::string ReadAll(IFileSystem& fs, const char* path) {
  std::unique_ptr<IReadFile> file;
  EXPECT_EQ(fs.OpenRead(path, file), 0);
  std::uint64_t size = 0;
  EXPECT_EQ(file->Size(size), 0);
  std::string content(size + 10, '\0');
  std::size_t got = 0;
  EXPECT_EQ(file->Read(&content[0], content.size(), got), 0);
  EXPECT_EQ(got, size);
  content.resize(got);
  return content;
}

void WriteAll(IFileSystem& fs, const char* path, const std::string& content) {
  std::unique_ptr<IWriteFile> file;
  ASSERT_EQ(fs.Create(path, file), 0);
  EXPECT_EQ(file->Write(content.data(), content.size()), 0);
  EXPECT_EQ(file->Close(), 0);
  EXPECT_EQ(file->Write("x", 1), EBADF);
}

}  // namespace

TEST(IFileSystem, PosixAndMemoryBehaveAlike) {
  const std::string path = testing::TempDir() + "ovxml_file_test_" + std::to_string(getpid());
  auto memory = NewMemoryFileSystem();
  for (IFileSystem* fs : {&IFileSystem::Default(), memory.get()}) {
    WriteAll(*fs, path.c_str(), "first version, longer");
    WriteAll(*fs, path.c_str(), "second");  // created anew, not appended
    EXPECT_EQ(ReadAll(*fs, path.c_str()), "second");
    std::unique_ptr<IReadFile> missing;
    EXPECT_EQ(fs->OpenRead((path + ".missing").c_str(), missing), ENOENT);
    std::unique_ptr<IWriteFile> nowhere;
    EXPECT_NE(fs->Create("", nowhere), 0);
  }
  std::unique_ptr<IReadFile> dir;
  EXPECT_EQ(IFileSystem::Default().OpenRead(testing::TempDir().c_str(), dir), EISDIR);
  unlink(path.c_str());
}

TEST(IFileSystem, CurrentCanBeSwappedForTests) {
  auto memory = NewMemoryFileSystem();
  EXPECT_EQ(&IFileSystem::Current(), &IFileSystem::Default());
  IFileSystem::SetCurrent(memory.get());
  EXPECT_EQ(&IFileSystem::Current(), memory.get());
  IFileSystem::SetCurrent(nullptr);
  EXPECT_EQ(&IFileSystem::Current(), &IFileSystem::Default());
}
