#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "fakes/FakePrivateFile.h"
#include "platform/PosixPrivateFile.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// Tests the contract of PrivateFile with every implementation.
class OnDisk {
 public:
  PrivateFile& file() { return file_; }

 private:
  const TemporaryDirectory folder_{"navora-file"};
  PosixPrivateFile file_{folder_.path() / "new folder" / "draft.json"};
};

class InMemory {
 public:
  PrivateFile& file() { return file_; }

 private:
  FakePrivateFile file_{std::make_shared<FakePrivateFile::Disk>()};
};

template <typename Implementation>
class PrivateFileContractTest : public testing::Test {
 protected:
  PrivateFile& file() { return implementation_.file(); }
  void expectContent(const std::optional<std::string>& content) {
    const auto found = file().read();
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, content);
  }

 private:
  Implementation implementation_;
};

using PrivateFileImplementations = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(PrivateFileContractTest, PrivateFileImplementations);

TYPED_TEST(PrivateFileContractTest, BeginsWithoutAFile) {
  this->expectContent(std::nullopt);
  EXPECT_FALSE(this->file().setAside());
}

TYPED_TEST(PrivateFileContractTest, ReplacesItsContent) {
  const std::string contents[] = {"first", "", std::string("a\0b\xFF\n", 5),
                                  std::string(300'000, 'x'), "last"};
  for (const std::string& content : contents) {
    EXPECT_EQ(this->file().write(content), std::nullopt);
    this->expectContent(content);
  }
}

TYPED_TEST(PrivateFileContractTest, RemovesTheFile) {
  ASSERT_EQ(this->file().write("text"), std::nullopt);
  EXPECT_EQ(this->file().remove(), std::nullopt);
  this->expectContent(std::nullopt);
  EXPECT_EQ(this->file().remove(), std::nullopt);
}

TYPED_TEST(PrivateFileContractTest, SetsTheFileAside) {
  ASSERT_EQ(this->file().write("damaged"), std::nullopt);
  const auto name = this->file().setAside();
  ASSERT_TRUE(name);
  EXPECT_TRUE(name->ends_with(".damaged")) << *name;
  this->expectContent(std::nullopt);
  EXPECT_EQ(this->file().write("new"), std::nullopt);
  this->expectContent("new");
}

class PosixPrivateFileTest : public testing::Test {
 protected:
  const TemporaryDirectory folder_{"navora-file"};
  const std::filesystem::path path_ = folder_.path() / "draft.json";
  const std::filesystem::path newPath_ = folder_.path() / "draft.json.new";
  PosixPrivateFile file_{path_};
};

TEST_F(PosixPrivateFileTest, OnlyTheUserMayReadTheFile) {
  writeFile(newPath_, "left by an interrupted write");
  std::filesystem::permissions(newPath_, std::filesystem::perms::all);
  ASSERT_EQ(file_.write("text"), std::nullopt);
  struct stat status{};
  ASSERT_EQ(::stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777u, 0600u);
  EXPECT_FALSE(std::filesystem::exists(newPath_));
}

TEST_F(PosixPrivateFileTest, RemovesWhatAnInterruptedWriteHasLeft) {
  writeFile(newPath_, "left");
  EXPECT_EQ(file_.remove(), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(PosixPrivateFileTest, DoesNotWriteThroughALink) {
  writeFile(folder_.path() / "other", "another file");
  std::filesystem::create_symlink("other", newPath_);
  EXPECT_NE(file_.write("text"), std::nullopt);
  EXPECT_EQ(readFile(folder_.path() / "other"), "another file");
}

TEST_F(PosixPrivateFileTest, KeepsTheOldContentIfItCannotWrite) {
  ASSERT_EQ(file_.write("old"), std::nullopt);
  std::filesystem::create_directory(newPath_);
  const auto error = file_.write("new");
  ASSERT_TRUE(error);
  EXPECT_FALSE(error->localizedDescription.empty());
  EXPECT_EQ(readFile(path_), "old");
}

TEST_F(PosixPrivateFileTest, KeepsWhatWasSetAsideBefore) {
  for (const char* content : {"first", "second", "third"}) {
    ASSERT_EQ(file_.write(content), std::nullopt);
    ASSERT_TRUE(file_.setAside());
  }
  EXPECT_EQ(readFile(folder_.path() / "draft.json.damaged"), "first");
  EXPECT_EQ(readFile(folder_.path() / "draft.json.damaged.2"), "second");
  EXPECT_EQ(readFile(folder_.path() / "draft.json.damaged.3"), "third");
}

TEST_F(PosixPrivateFileTest, ReportsAFolderThatCannotBeMade) {
  PosixPrivateFile file("/proc/navora/draft.json");
  EXPECT_NE(file.write("text"), std::nullopt);
  EXPECT_EQ(file.remove(), std::nullopt);
}

}  // namespace
}  // namespace navora
