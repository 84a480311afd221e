#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateUnpacker.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/TestArchive.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::HasSubstr;

using Kind = TestMember::Kind;

// Unpacks into "target", beside files that must not change.
class UpdateUnpackerTest : public testing::Test {
 protected:
  UpdateUnpackerTest() {
    std::filesystem::create_directories(target_);
    writeFile(folder_.path() / "beside" / "a", "untouched");
    writeFile(folder_.path() / "navora" / "a", "untouched");
    writeFile(folder_.path() / "a", "untouched");
  }
  ~UpdateUnpackerTest() override { ::umask(umask_); }

  std::string unpack(const UpdateUnpacker::Progress& progress = [](double) {}) {
    const auto error = UpdateUnpacker::unpack(archive_, target_, limits_, progress, cancelled_);
    return error ? error->localizedDescription : "unpacked";
  }
  // In any case, nothing beside the folder may change.
  std::string unpack(const std::vector<TestMember>& members) {
    EXPECT_TRUE(writeTestArchive(archive_, members));
    std::filesystem::remove_all(target_);
    std::filesystem::create_directories(target_);
    const FileTree before = treeBeside();
    const std::string result = unpack();
    EXPECT_EQ(treeBeside(), before);
    return result;
  }
  FileTree treeBeside() const { return describeTree(folder_.path(), target_); }
  FileTree unpacked() const { return describeTree(target_); }

  const mode_t umask_ = ::umask(022);
  const TemporaryDirectory folder_;
  const std::filesystem::path archive_ = folder_.path() / "archive";
  const std::filesystem::path target_ = folder_.path() / "target";
  UpdateUnpacker::Limits limits_;
  std::atomic<bool> cancelled_ = false;
};

TEST_F(UpdateUnpackerTest, UnpacksFilesFoldersAndLinks) {
  EXPECT_EQ(
      unpack({{.path = "navora/", .kind = Kind::folder},
              {.path = "navora/link", .kind = Kind::symbolicLink, .target = "share/a"},
              {.path = "navora/bin/navora", .content = "program", .mode = 0755},
              {.path = "navora/share/a", .content = "text"},
              {.path = "navora/share/deep/link", .kind = Kind::symbolicLink, .target = "../a"},
              {.path = "navora/empty", .kind = Kind::folder, .mode = 0755}}),
      "unpacked");
  EXPECT_EQ(unpacked(), (FileTree{{"navora", "755 folder"},
                                  {"navora/link", "link to share/a"},
                                  {"navora/bin", "755 folder"},
                                  {"navora/bin/navora", "755 file program"},
                                  {"navora/share", "755 folder"},
                                  {"navora/share/a", "644 file text"},
                                  {"navora/share/deep", "755 folder"},
                                  {"navora/share/deep/link", "link to ../a"},
                                  {"navora/empty", "755 folder"}}));
}

TEST_F(UpdateUnpackerTest, KeepsOnlyTheExecutableBitOfModes) {
  EXPECT_EQ(unpack({{.path = "navora/setuid", .content = "x", .mode = 06755},
                    {.path = "navora/sticky", .kind = Kind::folder, .mode = 07777},
                    {.path = "navora/closed", .kind = Kind::folder, .mode = 0},
                    {.path = "navora/closed/secret", .content = "x", .mode = 0},
                    {.path = "navora/open", .content = "x", .mode = 0666},
                    {.path = "navora/private", .content = "x", .mode = 0700}}),
            "unpacked");
  EXPECT_EQ(unpacked(), (FileTree{{"navora", "755 folder"},
                                  {"navora/setuid", "755 file x"},
                                  {"navora/sticky", "755 folder"},
                                  {"navora/closed", "755 folder"},
                                  {"navora/closed/secret", "644 file x"},
                                  {"navora/open", "644 file x"},
                                  {"navora/private", "755 file x"}}));
}

TEST_F(UpdateUnpackerTest, RefusesMembersThatLeadOut) {
  const std::string outside = (folder_.path() / "beside" / "a").string();
  for (const TestMember& member : std::vector<TestMember>{
           {.path = outside, .content = "x"},
           {.path = "../beside/a", .content = "x"},
           {.path = "navora/../../beside/a", .content = "x"},
           {.path = "../new", .kind = Kind::folder},
           {.path = "navora/a", .kind = Kind::hardLink, .target = outside},
           {.path = "navora/a", .kind = Kind::hardLink, .target = "../a"},
           {.path = "navora/a", .kind = Kind::symbolicLink, .target = outside},
           {.path = "navora/a", .kind = Kind::symbolicLink, .target = "../../beside/a"},
           {.path = "navora/a", .kind = Kind::fifo},
           {.path = "navora/a", .kind = Kind::characterDevice},
           {.path = "navora/a", .kind = Kind::blockDevice}}) {
    EXPECT_THAT(unpack({{.path = "navora/b", .content = "x"}, member}), HasSubstr("has no place"))
        << member.path;
  }
}

TEST_F(UpdateUnpackerTest, WritesNothingThroughALink) {
  EXPECT_THAT(unpack({{.path = "navora/share/real", .kind = Kind::folder},
                      {.path = "navora/link", .kind = Kind::symbolicLink, .target = "share"},
                      {.path = "navora/link/a", .content = "x"}}),
              HasSubstr("File exists"));
  EXPECT_THAT(unpack({{.path = "navora/link/a", .content = "x"},
                      {.path = "navora/link", .kind = Kind::symbolicLink, .target = "share"}}),
              HasSubstr("File exists"));
}

TEST_F(UpdateUnpackerTest, RefusesALinkBehindAnotherLink) {
  EXPECT_THAT(unpack({{.path = "navora/share/deep", .kind = Kind::folder},
                      {.path = "navora/up", .kind = Kind::symbolicLink, .target = "share/deep"},
                      {.path = "navora/up/link", .kind = Kind::symbolicLink, .target = ".."}}),
              HasSubstr("behind a link"));
  // The same in the other order.
  EXPECT_THAT(unpack({{.path = "navora/up/a/link", .kind = Kind::symbolicLink, .target = "../.."},
                      {.path = "navora/up", .kind = Kind::symbolicLink, .target = "share"}}),
              HasSubstr("behind a link"));
}

TEST_F(UpdateUnpackerTest, LinksThroughOtherLinksStayInside) {
  ASSERT_EQ(unpack({{.path = "navora/share/deep/a", .content = "x"},
                    {.path = "navora/one", .kind = Kind::symbolicLink, .target = "share/deep"},
                    {.path = "navora/share/two", .kind = Kind::symbolicLink, .target = ".."},
                    {.path = "navora/three",
                     .kind = Kind::symbolicLink,
                     .target = "share/two/share/two/one/a"},
                    {.path = "navora/loop", .kind = Kind::symbolicLink, .target = "loop"}}),
            "unpacked");
  const auto root = std::filesystem::canonical(target_ / "navora");
  for (const char* link : {"one", "share/two", "three"}) {
    const auto end = std::filesystem::canonical(target_ / "navora" / link).string();
    EXPECT_TRUE(end == root.string() || end.starts_with(root.string() + "/")) << end;
  }
}

TEST_F(UpdateUnpackerTest, RefusesDuplicateNames) {
  EXPECT_THAT(unpack({{.path = "navora/a", .content = "x"}, {.path = "navora/a", .content = "y"}}),
              HasSubstr("File exists"));
  EXPECT_THAT(unpack({{.path = "navora/a", .kind = Kind::folder}, {.path = "navora/a"}}),
              HasSubstr("File exists"));
  EXPECT_THAT(unpack({{.path = "navora/a", .kind = Kind::symbolicLink, .target = "b"},
                      {.path = "navora/a", .kind = Kind::symbolicLink, .target = "c"}}),
              HasSubstr("File exists"));
  EXPECT_THAT(unpack({{.path = "navora/a"}, {.path = "navora/a", .kind = Kind::folder}}),
              HasSubstr("Not a directory"));
  EXPECT_THAT(unpack({{.path = "navora/a"}, {.path = "navora/a/b"}}), HasSubstr("Not a directory"));
  // A file's path names its folder too.
  EXPECT_EQ(unpack({{.path = "navora/a/b"},
                    {.path = "navora/a", .kind = Kind::folder},
                    {.path = "navora/a/", .kind = Kind::folder}}),
            "unpacked");
}

TEST_F(UpdateUnpackerTest, TooManyMembersAreRefused) {
  limits_.members = 3;
  EXPECT_EQ(unpack({{.path = "navora/a"}, {.path = "navora/b"}, {.path = "navora/c"}}), "unpacked");
  EXPECT_EQ(
      unpack(
          {{.path = "navora/a"}, {.path = "navora/b"}, {.path = "navora/c"}, {.path = "navora/d"}}),
      "unpacking: The archive holds too many files");
  EXPECT_EQ(unpack({{.path = "a", .kind = Kind::folder},
                    {.path = "a", .kind = Kind::folder},
                    {.path = "a", .kind = Kind::folder},
                    {.path = "a", .kind = Kind::folder}}),
            "unpacking: The archive holds too many files");
}

TEST_F(UpdateUnpackerTest, RefusesADecompressionBombWhileUnpacking) {
  limits_.bytes = 1'000'000;
  EXPECT_EQ(unpack({{.path = "navora/a", .content = std::string(1'000'000, '\0')}}), "unpacked");
  EXPECT_EQ(unpack({{.path = "navora/a", .content = std::string(50'000'000, '\0')}}),
            "unpacking: The archive holds too much");
  EXPECT_LE(std::filesystem::file_size(target_ / "navora" / "a"), 1'000'000U);
  EXPECT_EQ(unpack({{.path = "navora/a", .content = std::string(999'999, '\0')},
                    {.path = "navora/b", .content = "ab"}}),
            "unpacking: The archive holds too much");
}

TEST_F(UpdateUnpackerTest, ManyLinksTakeLinearTime) {
  std::vector<TestMember> members;
  for (int index = 0; index < 5'000; ++index) {
    members.push_back({.path = "navora/folder/" + std::to_string(index),
                       .kind = Kind::symbolicLink,
                       .target = "a"});
  }
  EXPECT_EQ(unpack(members), "unpacked");
}

TEST_F(UpdateUnpackerTest, ReportsDamageAnywhere) {
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = std::string(5000, 'a')}},
                               TestCompression::gzip));
  const std::string whole = readFile(archive_);
  for (std::size_t size = 0; size + 20 < whole.size(); size += 3) {
    std::filesystem::remove_all(target_);
    std::filesystem::create_directories(target_);
    writeFile(archive_, whole.substr(0, size));
    EXPECT_THAT(unpack(), HasSubstr("unpacking: ")) << size;
  }
}

TEST_F(UpdateUnpackerTest, AMissingArchiveOrFolderIsReported) {
  EXPECT_THAT(unpack(), HasSubstr("cannot be opened"));
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a"}}));
  std::filesystem::remove(target_);
  EXPECT_THAT(unpack(), HasSubstr("No such file or directory"));
  std::filesystem::create_directory_symlink("beside", target_);
  const FileTree before = treeBeside();
  EXPECT_THAT(unpack(), HasSubstr("The folder for the update cannot be used"));
  EXPECT_EQ(treeBeside(), before);
}

std::string noise(std::size_t size) {
  std::mt19937 random(1);
  std::string text(size, '\0');
  for (char& c : text)
    c = static_cast<char>(random());
  return text;
}

TEST_F(UpdateUnpackerTest, ProgressGrowsToOne) {
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = noise(10'000'000)}}));
  std::vector<double> told;
  EXPECT_EQ(unpack([&](double progress) { told.push_back(progress); }), "unpacked");
  EXPECT_GT(told.size(), 10U);
  EXPECT_LT(told.size(), 110U);
  EXPECT_TRUE(std::ranges::is_sorted(told));
  EXPECT_GT(told.front(), 0);
  EXPECT_LT(told.front(), 0.2);
  EXPECT_EQ(told.back(), 1);
}

TEST_F(UpdateUnpackerTest, StopsInTheMiddleOfAFileWhenCancelled) {
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = noise(10'000'000)}}));
  EXPECT_EQ(unpack([&](double progress) { cancelled_ = progress > 0.3; }), "unpacking: Cancelled");
  EXPECT_LT(std::filesystem::file_size(target_ / "navora" / "a"), 10'000'000U);
}

TEST_F(UpdateUnpackerTest, CreatesNothingIfCancelledBefore) {
  cancelled_ = true;
  for (const Kind kind : {Kind::file, Kind::folder, Kind::symbolicLink}) {
    EXPECT_EQ(unpack({{.path = "navora/a", .kind = kind, .target = "b"}}), "unpacking: Cancelled");
    EXPECT_EQ(unpacked(), FileTree());
  }
}

// Mounts a file system of one megabyte at `folder` until destroyed.
class SmallDisk {
 public:
  explicit SmallDisk(const std::filesystem::path& folder) : folder_(folder) {
    isMounted_ = ::mount("navora-test", folder.c_str(), "tmpfs", 0, "size=1m") == 0;
  }
  ~SmallDisk() {
    if (isMounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool isMounted() const { return isMounted_; }

 private:
  const std::filesystem::path folder_;
  bool isMounted_ = false;
};

TEST_F(UpdateUnpackerTest, AFullDiskIsReported) {
  const SmallDisk disk(target_);
  if (!disk.isMounted()) GTEST_SKIP() << "NOT TESTED: only root can mount the small disk";
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = noise(3'000'000)}}));
  EXPECT_EQ(unpack(), "unpacking: \"navora/a\" cannot be made (No space left on device)");
}

// The same without the privilege to mount: limits the size of this process's files.
TEST_F(UpdateUnpackerTest, AFileSizeLimitIsReported) {
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = noise(3'000'000)}}));
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{1'000'000, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string result = unpack();
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(result, "unpacking: \"navora/a\" cannot be made (File too large)");
}

}  // namespace
}  // namespace navora
