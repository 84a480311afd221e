#include <gmock/gmock.h>

#include "hosts/linux/installation/UpdatePreparation.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/SampleVersion.h"
#include "linux/installation/TestArchive.h"
#include "make-update/ArchiveWriter.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using Kind = TestMember::Kind;

class UpdatePreparationTest : public testing::Test {
 protected:
  UpdatePreparationTest() {
    makeSampleVersion(next_, "2.0");
    EXPECT_EQ(writeArchive(next_, "2.0", folder_->archive()), std::nullopt);
  }

  std::string prepare(const std::optional<AppcastEntry>& given = std::nullopt) {
    const auto entry = given.value_or(std::filesystem::exists(folder_->archive())
                                          ? sampleEntry(folder_->archive(), "2.0", key_)
                                          : AppcastEntry());
    const auto error = prepareUpdate(
        *folder_, entry, publicKeyOf(key_), [this](double progress) { progress_ = progress; },
        cancelled_);
    return error ? error->localizedDescription : "prepared";
  }
  std::string prepare(const std::vector<TestMember>& members) {
    EXPECT_TRUE(writeTestArchive(folder_->archive(), members));
    std::filesystem::remove_all(folder_->unpacked());
    return prepare();
  }

  const TemporaryDirectory parent_;
  const std::filesystem::path next_ = parent_.path() / "next";
  const Installation installation_ = (makeSampleVersion(parent_.path() / "navora", "1.0"),
                                      *Installation::at(parent_.path() / "navora"));
  Expected<UpdateFolder, PlatformError> folder_ = UpdateFolder::claim(installation_);
  const SigningKey key_ = SigningKey::make();
  std::atomic<bool> cancelled_ = false;
  double progress_ = 0;

  const TestMember record_{.path = "navora/installation.json",
                           .content = Installation::record("2.0")};
  const TestMember program_{.path = "navora/bin/navora", .content = "#!/bin/sh", .mode = 0755};
};

TEST_F(UpdatePreparationTest, UnpacksTheVersionAndDeletesTheArchive) {
  EXPECT_EQ(prepare(), "prepared");
  EXPECT_EQ(describeTree(folder_->version()), describeTree(next_));
  EXPECT_FALSE(std::filesystem::exists(folder_->archive()));
  EXPECT_EQ(progress_, 1);
}

TEST_F(UpdatePreparationTest, ADifferentVersionInTheArchiveIsRefused) {
  auto entry = sampleEntry(folder_->archive(), "3.0", key_);
  EXPECT_EQ(prepare(entry), "verification: The archive holds version 2.0 in place of 3.0");
}

TEST_F(UpdatePreparationTest, AVersionThatOnlyComparesEqualIsRefused) {
  EXPECT_EQ(prepare(sampleEntry(folder_->archive(), "2.0-1", key_)),
            "verification: The archive holds version 2.0 in place of 2.0-1");
}

TEST_F(UpdatePreparationTest, AnUnsignedArchiveIsNotUnpacked) {
  EXPECT_EQ(prepare(sampleEntry(folder_->archive(), "2.0", SigningKey::make())),
            "verification: The signature of the archive is not valid");
  EXPECT_FALSE(std::filesystem::exists(folder_->unpacked()));
}

TEST_F(UpdatePreparationTest, AReleaseWithoutAnArchiveIsRefused) {
  AppcastEntry entry = sampleEntry(folder_->archive(), "2.0", key_);
  std::filesystem::remove(folder_->archive());
  EXPECT_EQ(prepare(entry), "verification: The archive cannot be read (No such file or directory)");
  entry.archive.reset();
  EXPECT_EQ(prepare(entry), "verification: The release has no archive");
}

TEST_F(UpdatePreparationTest, OtherFoldersInTheArchiveAreRefused) {
  const std::string noNavora = "verification: The archive holds no Navora";
  EXPECT_EQ(prepare({record_, program_}), "prepared");
  EXPECT_EQ(prepare({record_, program_, {.path = "other/a"}}), noNavora);
  EXPECT_EQ(prepare({record_, program_, {.path = "a"}}), noNavora);
  EXPECT_EQ(prepare({record_, program_, {.path = ".navora", .kind = Kind::folder}}), noNavora);
  EXPECT_EQ(prepare({{.path = "other/a"}}), noNavora);
  EXPECT_EQ(prepare({{.path = "navora"}}), noNavora);
  EXPECT_EQ(prepare(std::vector<TestMember>{}), noNavora);
}

TEST_F(UpdatePreparationTest, AVersionWithoutARecordIsRefused) {
  const std::string noNavora = "verification: The archive holds no Navora";
  EXPECT_EQ(prepare({program_}), noNavora);
  EXPECT_EQ(prepare({program_, {.path = record_.path, .content = "{}"}}), noNavora);
  EXPECT_EQ(prepare({program_, {.path = record_.path, .kind = Kind::folder}}), noNavora);
}

TEST_F(UpdatePreparationTest, AVersionWithoutAProgramIsRefused) {
  const std::string noProgram = "verification: The archive holds no program";
  EXPECT_EQ(prepare({record_}), noProgram);
  EXPECT_EQ(prepare({record_, {.path = program_.path, .content = "x", .mode = 0644}}), noProgram);
  EXPECT_EQ(prepare({record_, {.path = program_.path, .kind = Kind::folder}}), noProgram);
  EXPECT_EQ(
      prepare({record_, {.path = program_.path, .kind = Kind::symbolicLink, .target = "none"}}),
      noProgram);
}

TEST_F(UpdatePreparationTest, StopsWhenCancelled) {
  cancelled_ = true;
  EXPECT_EQ(prepare(), "unpacking: Cancelled");
}

}  // namespace
}  // namespace navora
