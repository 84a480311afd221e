#include <array>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateFolder.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/OtherUser.h"
#include "linux/installation/SampleVersion.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::HasSubstr;

class UpdateFolderTest : public testing::Test {
 protected:
  std::string claimed() const {
    const auto folder = UpdateFolder::claim(installation_);
    return folder ? "claimed" : folder.error().localizedDescription;
  }
  // Returns the names of the entries beside the installation.
  FileTree beside() const {
    FileTree tree = describeTree(parent_.path());
    std::erase_if(tree, [](const auto& entry) { return entry.first.starts_with("navora"); });
    return tree;
  }

  const TemporaryDirectory parent_;
  const std::filesystem::path folder_ = parent_.path() / ".navora.update";
  const Installation installation_ = (makeSampleVersion(parent_.path() / "navora", "1.0"),
                                      *Installation::at(parent_.path() / "navora"));
};

// Another program that holds the lock until this object is destroyed.
class OtherProgram {
 public:
  explicit OtherProgram(const Installation& installation) {
    std::array<int, 2> ready{};
    std::array<int, 2> end{};
    if (::pipe(ready.data()) != 0 || ::pipe(end.data()) != 0) return;
    process_ = ::fork();
    if (process_ == 0) {
      ::close(end[1]);
      auto folder = UpdateFolder::claim(installation);
      const char byte = folder ? 'y' : 'n';
      char unused = 0;
      if (::write(ready[1], &byte, 1) != 1 || ::read(end[0], &unused, 1) != 0) ::_exit(2);
      ::_exit(0);
    }
    ::close(ready[1]);
    ::close(end[0]);
    end_ = FileDescriptor(end[1]);
    char byte = 0;
    holds_ = ::read(ready[0], &byte, 1) == 1 && byte == 'y';
    ::close(ready[0]);
  }
  ~OtherProgram() { endWithoutRemoving(); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  bool holds() const { return holds_; }
  // Leaves a folder as a killed program would.
  void endWithoutRemoving() {
    end_ = FileDescriptor();
    if (process_ > 0) ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  pid_t process_ = -1;
  FileDescriptor end_;
  bool holds_ = false;
};

TEST_F(UpdateFolderTest, ClaimsAnEmptyPrivateFolderBesideTheInstallation) {
  auto folder = UpdateFolder::claim(installation_);
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->path(), folder_);
  EXPECT_EQ(beside(), (FileTree{{".navora.update", "700 folder"}}));
  EXPECT_EQ(folder->version(), folder_ / "new" / "navora");
}

TEST_F(UpdateFolderTest, IsRemovedWithItsOwner) {
  {
    const auto folder = UpdateFolder::claim(installation_);
    ASSERT_TRUE(folder);
    writeFile(folder->version() / "bin" / "navora", "x");
    writeFile(folder->archive(), "x");
  }
  EXPECT_EQ(beside(), FileTree());
}

TEST_F(UpdateFolderTest, IsLockedAgainstOtherPrograms) {
  OtherProgram other(installation_);
  ASSERT_TRUE(other.holds());
  writeFile(folder_ / "archive", "of the other");
  EXPECT_THAT(claimed(), HasSubstr("Another program is updating the application"));
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(readFile(folder_ / "archive"), "of the other");
}

TEST_F(UpdateFolderTest, IsLockedWithinTheProgram) {
  const auto folder = UpdateFolder::claim(installation_);
  ASSERT_TRUE(folder);
  EXPECT_THAT(claimed(), HasSubstr("Another program is updating the application"));
}

TEST_F(UpdateFolderTest, LeftoversOfAKilledProgramAreRemoved) {
  OtherProgram other(installation_);
  ASSERT_TRUE(other.holds());
  writeFile(folder_ / "new" / "navora" / "bin" / "navora", "x");
  other.endWithoutRemoving();
  EXPECT_NE(beside(), FileTree());
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(beside(), FileTree());
  UpdateFolder::removeLeftovers(installation_);
}

TEST_F(UpdateFolderTest, ClaimingRemovesLeftovers) {
  writeFile(folder_ / "new" / "navora" / "bin" / "navora", "x");
  writeFile(folder_ / "one" / "x", "x");
  std::filesystem::create_symlink("/", folder_ / "link");
  const auto folder = UpdateFolder::claim(installation_);
  ASSERT_TRUE(folder);
  EXPECT_EQ(beside(), (FileTree{{".navora.update", "755 folder"}}));
}

TEST_F(UpdateFolderTest, ALinkInItsPlaceIsNotFollowed) {
  writeFile(parent_.path() / "navora2" / "precious", "x");
  const FileTree before = describeTree(parent_.path() / "navora2");
  std::filesystem::create_directory_symlink("navora2", folder_);
  EXPECT_NE(claimed(), "claimed");
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(describeTree(parent_.path() / "navora2"), before);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_));
}

TEST_F(UpdateFolderTest, LinksInsideAreRemovedAndNotWhatTheyLeadTo) {
  writeFile(parent_.path() / "navora2" / "precious", "x");
  std::filesystem::create_directories(folder_);
  std::filesystem::create_directory_symlink("../navora2", folder_ / "new");
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(beside(), FileTree());
  EXPECT_EQ(readFile(parent_.path() / "navora2" / "precious"), "x");
}

TEST_F(UpdateFolderTest, AFileInItsPlaceIsLeftAlone) {
  writeFile(folder_, "x");
  EXPECT_NE(claimed(), "claimed");
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(readFile(folder_), "x");
}

TEST_F(UpdateFolderTest, AFolderOfAnotherUserIsLeftAlone) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can give files away";
  writeFile(folder_ / "a", "x");
  ASSERT_EQ(::chown(folder_.c_str(), nobody, nobody), 0);
  const FileTree before = beside();
  EXPECT_NE(claimed(), "claimed");
  UpdateFolder::removeLeftovers(installation_);
  EXPECT_EQ(beside(), before);
}

TEST_F(UpdateFolderTest, AReadOnlyParentIsReported) {
  ::chmod(parent_.path().c_str(), 0555);
  EXPECT_TRUE(isTrueWithoutPrivileges([this] {
    return claimed() ==
           "installation: No folder can be made beside the application (Permission denied)";
  }));
  ::chmod(parent_.path().c_str(), 0755);
}

TEST_F(UpdateFolderTest, CanBeHandedOver) {
  auto folder = UpdateFolder::claim(installation_);
  ASSERT_TRUE(folder);
  writeFile(folder->archive(), "x");
  FileDescriptor lock = folder->handOver();
  {
    const UpdateFolder gone = *std::move(folder);
  }
  EXPECT_EQ(readFile(folder_ / "archive"), "x");
  EXPECT_THAT(claimed(), HasSubstr("Another program is updating the application"));
  {
    const auto adopted = UpdateFolder::adopt(folder_, std::move(lock));
  }
  EXPECT_EQ(beside(), FileTree());
  EXPECT_EQ(claimed(), "claimed");
}

}  // namespace
}  // namespace navora
