#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "hosts/linux/installation/Installation.h"
#include "linux/installation/OtherUser.h"
#include "linux/installation/SampleVersion.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class InstallationTest : public testing::Test {
 protected:
  std::string versionFrom(const std::string& record) const {
    writeFile(folder_ / Installation::recordName, record);
    const auto installation = Installation::at(folder_);
    return installation ? installation->version() : "none";
  }
  bool isReplaceable() const {
    const auto installation = Installation::at(folder_);
    EXPECT_TRUE(installation);
    return installation && installation->isReplaceable();
  }

  const TemporaryDirectory parent_;
  const std::filesystem::path folder_ = parent_.path() / "navora";
};

TEST_F(InstallationTest, ARecordMakesAFolderAnInstallation) {
  EXPECT_EQ(versionFrom(Installation::record("1.2")), "1.2");
  EXPECT_EQ(versionFrom(R"({"version": "1.2", "other": [1, 2]})"), "1.2");
  const auto installation = Installation::at(folder_);
  ASSERT_TRUE(installation);
  EXPECT_EQ(installation->folder(), folder_);
  EXPECT_EQ(installation->executable(), folder_ / "bin" / "navora");
}

TEST_F(InstallationTest, AnInvalidRecordIsRefused) {
  for (const std::string& record :
       {std::string(), std::string("1.2"), std::string("{}"), std::string("[]"),
        std::string(R"({"version": 1})"), std::string(R"({"version": ""})"),
        std::string(R"({"version": null})"), std::string(R"(["version", "1.2"])"),
        std::string(R"({"version": "1.2")"), std::string(R"({"version": "1.2"} x)"),
        std::string("{\"version\": \"\xFF\"}"), std::string(R"({"Version": "1.2"})"),
        R"({"version": "1.2", "more": ")" + std::string(5000, 'x') + "\"}"}) {
    EXPECT_EQ(versionFrom(record), "none") << record;
  }
}

TEST_F(InstallationTest, WithoutAReadableRecordThereIsNoInstallation) {
  EXPECT_FALSE(Installation::at(folder_));
  std::filesystem::create_directories(folder_);
  EXPECT_FALSE(Installation::at(folder_));
  std::filesystem::create_directories(folder_ / Installation::recordName);
  EXPECT_FALSE(Installation::at(folder_));
}

TEST_F(InstallationTest, ThisProgramBelongsToNoInstallation) {
  EXPECT_FALSE(Installation::ofThisProgram());
}

TEST_F(InstallationTest, AnOwnInstallationIsReplaceable) {
  makeSampleVersion(folder_, "1.2");
  std::filesystem::create_directories(folder_ / "libexec" / "navora");
  EXPECT_TRUE(isReplaceable());
}

TEST_F(InstallationTest, AFolderWithOtherFilesIsNotReplaceable) {
  for (const char* name : {"lib", "README", ".hidden", "bin2"}) {
    makeSampleVersion(folder_, "1.2");
    writeFile(folder_ / name, "x");
    EXPECT_FALSE(isReplaceable()) << name;
    std::filesystem::remove_all(folder_);
  }
}

TEST_F(InstallationTest, ALinkToAnInstallationIsNotReplaceable) {
  makeSampleVersion(parent_.path() / "elsewhere", "1.2");
  std::filesystem::create_directory_symlink("elsewhere", folder_);
  EXPECT_FALSE(isReplaceable());
}

TEST_F(InstallationTest, ADeletedInstallationIsNotReplaceable) {
  makeSampleVersion(folder_, "1.2");
  const auto installation = Installation::at(folder_);
  ASSERT_TRUE(installation);
  std::filesystem::remove_all(folder_);
  EXPECT_FALSE(installation->isReplaceable());
}

// Makes an installation and its parent as the user who then inspects it.
class BoundInstallationTest : public InstallationTest {
 protected:
  BoundInstallationTest() { ::chmod(parent_.path().c_str(), 0777); }
  // Returns whether the user could replace their own installation after `change`.
  bool isReplaceableAfter(const std::function<void()>& change) const {
    return isTrueWithoutPrivileges([&] {
      makeSampleVersion(folder_, "1.2");
      change();
      const auto installation = Installation::at(folder_);
      return installation && installation->isReplaceable();
    });
  }
  ~BoundInstallationTest() override {
    if (::geteuid() == 0) return;
    std::filesystem::permissions(parent_.path(), std::filesystem::perms::owner_all);
  }
};

TEST_F(BoundInstallationTest, AnOwnInstallationIsReplaceableWithoutPrivileges) {
  EXPECT_TRUE(isReplaceableAfter([] {}));
}

TEST_F(BoundInstallationTest, AReadOnlySubfolderPreventsReplacement) {
  EXPECT_FALSE(
      isReplaceableAfter([this] { ::chmod((folder_ / "share" / "navora").c_str(), 0555); }));
  ::chmod((folder_ / "share" / "navora").c_str(), 0755);
}

TEST_F(BoundInstallationTest, AReadOnlyInstallationIsNotReplaceable) {
  EXPECT_FALSE(isReplaceableAfter([this] { ::chmod(folder_.c_str(), 0555); }));
  ::chmod(folder_.c_str(), 0755);
}

TEST_F(BoundInstallationTest, AReadOnlyParentPreventsReplacement) {
  makeSampleVersion(folder_, "1.2");
  ASSERT_TRUE(::geteuid() != 0 || ::chown(folder_.c_str(), nobody, nobody) == 0);
  ::chmod(parent_.path().c_str(), 0555);
  EXPECT_FALSE(isTrueWithoutPrivileges([this] {
    const auto installation = Installation::at(folder_);
    return !installation || installation->isReplaceable();
  }));
  ::chmod(parent_.path().c_str(), 0755);
}

TEST_F(BoundInstallationTest, AnInstallationOfAnotherUserIsNotReplaceable) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can give files away";
  makeSampleVersion(folder_, "1.2");
  EXPECT_TRUE(isReplaceable());
  ASSERT_EQ(::chown(folder_.c_str(), nobody, nobody), 0);
  EXPECT_FALSE(isReplaceable());
}

TEST_F(InstallationTest, AMountPointAndAReadOnlyFileSystemAreNotReplaceable) {
  std::filesystem::create_directories(folder_);
  if (::mount("navora-test", folder_.c_str(), "tmpfs", 0, "size=1m") != 0)
    GTEST_SKIP() << "NOT TESTED: only root can mount a disk";
  makeSampleVersion(folder_, "1.2");
  EXPECT_FALSE(isReplaceable());
  makeSampleVersion(folder_ / "below", "1.2");
  const auto below = Installation::at(folder_ / "below");
  EXPECT_TRUE(below && below->isReplaceable());
  EXPECT_EQ(::mount("navora-test", folder_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_FALSE(below && below->isReplaceable());
  ::umount2(folder_.c_str(), MNT_DETACH);
}

}  // namespace
}  // namespace navora
