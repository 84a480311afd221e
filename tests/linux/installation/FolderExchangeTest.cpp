#include <gmock/gmock.h>

#include "hosts/linux/installation/FolderExchange.h"
#include "linux/installation/FileTree.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class FolderExchangeTest : public testing::Test {
 protected:
  FolderExchangeTest() {
    writeFile(one_ / "a", "of one");
    writeFile(other_ / "b", "of the other");
  }

  const TemporaryDirectory folder_;
  const std::filesystem::path one_ = folder_.path() / "one";
  const std::filesystem::path other_ = folder_.path() / "deep" / "other";
};

TEST_F(FolderExchangeTest, ExchangesTwoFolders) {
  const FileTree one = describeTree(one_);
  const FileTree other = describeTree(other_);
  EXPECT_EQ(exchangeFolders(one_, other_), std::nullopt);
  EXPECT_EQ(describeTree(one_), other);
  EXPECT_EQ(describeTree(other_), one);
  EXPECT_EQ(exchangeFolders(one_, other_), std::nullopt);
  EXPECT_EQ(describeTree(one_), one);
  EXPECT_EQ(describeTree(other_), other);
}

TEST_F(FolderExchangeTest, ChangesNothingIfOneIsMissing) {
  const FileTree before = describeTree(folder_.path());
  const auto error = exchangeFolders(one_, folder_.path() / "none");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->localizedDescription,
            "installation: The new version cannot take its place (No such file or directory)");
  EXPECT_TRUE(exchangeFolders(folder_.path() / "none", one_));
  EXPECT_TRUE(exchangeFolders(folder_.path(), one_));
  EXPECT_EQ(describeTree(folder_.path()), before);
}

}  // namespace
}  // namespace navora
