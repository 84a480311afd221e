#include <chrono>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateUnpacker.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/SampleVersion.h"
#include "make-update/ArchiveWriter.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::HasSubstr;

class ArchiveWriterTest : public testing::Test {
 protected:
  std::string write(const std::string& version = "2.0") const {
    return writeArchive(folder_, version, archive_).value_or("written");
  }
  FileTree unpacked() const {
    const auto target = parent_.path() / "target";
    std::filesystem::remove_all(target);
    std::filesystem::create_directories(target);
    const std::atomic<bool> cancelled = false;
    const auto error = UpdateUnpacker::unpack(archive_, target, {}, [](double) {}, cancelled);
    EXPECT_FALSE(error) << error->localizedDescription;
    return describeTree(target / "navora");
  }

  const TemporaryDirectory parent_;
  const std::filesystem::path folder_ = parent_.path() / "installed";
  const std::filesystem::path archive_ = parent_.path() / "archive";
};

TEST_F(ArchiveWriterTest, PacksWhatIsUnpacked) {
  makeSampleVersion(folder_, "2.0");
  ASSERT_EQ(write(), "written");
  EXPECT_EQ(unpacked(), describeTree(folder_));
}

TEST_F(ArchiveWriterTest, WritesTheRecordOfTheRelease) {
  makeSampleVersion(folder_, "1.0");
  ASSERT_EQ(write("2.0"), "written");
  EXPECT_EQ(unpacked().at(Installation::recordName), "644 file " + Installation::record("2.0"));
  std::filesystem::remove(folder_ / Installation::recordName);
  ASSERT_EQ(write("3.0"), "written");
  EXPECT_EQ(unpacked().at(Installation::recordName), "644 file " + Installation::record("3.0"));
}

TEST_F(ArchiveWriterTest, TheSameFilesGiveTheSameBytes) {
  makeSampleVersion(folder_, "2.0");
  ASSERT_EQ(write(), "written");
  const std::string first = readFile(archive_);
  // Created again, at another time, with other permissions and in another order.
  std::filesystem::remove_all(folder_);
  writeFile(folder_ / "share" / "navora" / "texts.json", "{\"text\": \"of 2.0\"}", 0600);
  makeSampleVersion(folder_, "2.0");
  ::chmod((folder_ / "share" / "navora" / "texts.json").c_str(), 0600);
  ::chmod((folder_ / "bin" / "navora").c_str(), 0700);
  std::filesystem::last_write_time(
      folder_ / "bin" / "navora",
      std::filesystem::file_time_type::clock::now() - std::chrono::hours(100));
  ASSERT_EQ(write(), "written");
  EXPECT_EQ(readFile(archive_), first);
}

TEST_F(ArchiveWriterTest, LinksThatLeadOutAreRefused) {
  for (const char* target : {"/etc/passwd", "../../outside", "../bin/../../x"}) {
    makeSampleVersion(folder_, "2.0");
    std::filesystem::create_symlink(target, folder_ / "share" / "out");
    EXPECT_THAT(write(), HasSubstr("has no place in an update")) << target;
    std::filesystem::remove_all(folder_);
  }
}

TEST_F(ArchiveWriterTest, SpecialFilesAreRefused) {
  makeSampleVersion(folder_, "2.0");
  ASSERT_EQ(::mkfifo((folder_ / "share" / "fifo").c_str(), 0600), 0);
  EXPECT_THAT(write(), HasSubstr("neither a file"));
}

TEST_F(ArchiveWriterTest, UnreadableAndUnwritableFilesAreReported) {
  EXPECT_THAT(write(), HasSubstr("cannot be read"));
  makeSampleVersion(folder_, "2.0");
  EXPECT_NE(writeArchive(folder_, "2.0", parent_.path() / "none" / "archive"), std::nullopt);
}

// Writes to /dev/full.
TEST_F(ArchiveWriterTest, AFullDiskIsReported) {
  makeSampleVersion(folder_, "2.0");
  EXPECT_NE(writeArchive(folder_, "2.0", "/dev/full"), std::nullopt);
}

}  // namespace
}  // namespace navora
