#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "contracts/FileReplacementContract.h"
#include "fakes/FakeFileReplacement.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/web/ReplacementFolder.h"
#include "linux/support/MainLoop.h"
#include "platform/PosixFileReplacement.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using MadeReplacement = Expected<std::unique_ptr<FileReplacement>, PlatformError>;

// Tests the contract of FileReplacement with the fake and the Linux implementation.
class DiskInMemory {
 public:
  MadeReplacement replace(const std::filesystem::path& destination) {
    return disk_.replace(destination);
  }
  std::filesystem::path path(const std::string& name) { return "/folder/" + name; }
  void write(const std::filesystem::path& path, const std::string& content) {
    disk_.files[path] = content;
  }
  std::string read(const std::filesystem::path& path) {
    const auto found = disk_.files.find(path);
    return found == disk_.files.end() ? std::string() : found->second;
  }
  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& [path, content] : disk_.files)
      all.push_back(path.filename().string());
    return all;
  }
  void turn() { disk_.finishWriting(); }
  std::filesystem::path unwritable() {
    disk_.refusal = PlatformError{"Disk", 13, "Permission denied"};
    return "/elsewhere/file";
  }

 private:
  EventLog log_;
  FakeDisk disk_{log_};
};

class RealDisk {
 public:
  MadeReplacement replace(const std::filesystem::path& destination) {
    return PosixFileReplacement::make(destination, mainQueue_, makeReplacementFolder,
                                      platformErrorFromErrno);
  }
  std::filesystem::path path(const std::string& name) { return folder_.path() / name; }
  void write(const std::filesystem::path& path, const std::string& content) {
    writeFile(path, content);
  }
  std::string read(const std::filesystem::path& path) { return readFile(path); }
  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      all.push_back(entry.path().filename().string());
    return all;
  }
  void turn() {}
  std::filesystem::path unwritable() { return folder_.path() / "missing" / "file"; }

 private:
  LinuxMainQueue mainQueue_;
  TemporaryDirectory folder_;
};

using Disks = testing::Types<DiskInMemory, RealDisk>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, FileReplacementContractTest, Disks);

mode_t modeOf(const std::filesystem::path& path) {
  struct stat status{};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

class LinuxFileReplacementTest : public FileReplacementContractTest<RealDisk> {};

TEST_F(LinuxFileReplacementTest, LetsOnlyTheUserReadWhatIsNotInPlace) {
  const auto replacement = replacing("file");
  EXPECT_EQ(modeOf(replacement->file().parent_path()), 0700U);
  EXPECT_THAT(disk_.names(), ElementsAre(testing::MatchesRegex("\\.navora-download-......")));
}

TEST_F(LinuxFileReplacementTest, LeavesTheModeThatTheFileWasMadeWith) {
  disk_.write(disk_.path("file"), "old");
  std::filesystem::permissions(disk_.path("file"), std::filesystem::perms::owner_read);
  const auto replacement = replacing("file");
  writeFile(replacement->file(), "new", 0644);
  EXPECT_EQ(put(*replacement), std::nullopt);
  EXPECT_EQ(modeOf(disk_.path("file")), 0644U);
}

TEST_F(LinuxFileReplacementTest, ReplacesTheFileThatALinkLeadsTo) {
  std::filesystem::create_directory(disk_.path("folder"));
  disk_.write(disk_.path("folder") / "file", "old");
  std::filesystem::create_symlink("folder/file", disk_.path("link"));
  const auto replacement = replacing("link");
  disk_.write(replacement->file(), "new");
  EXPECT_EQ(put(*replacement), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_symlink(disk_.path("link")));
  EXPECT_EQ(disk_.read(disk_.path("folder") / "file"), "new");
}

TEST_F(LinuxFileReplacementTest, DeletesWhatTheEngineWroteBesideIt) {
  auto replacement = replacing("file");
  disk_.write(replacement->file(), "");
  disk_.write(replacement->file().string() + ".wkdownload", "half");
  replacement.reset();
  EXPECT_THAT(disk_.names(), IsEmpty());
}

}  // namespace
}  // namespace navora
