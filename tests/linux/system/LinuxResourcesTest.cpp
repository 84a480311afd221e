#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "hosts/linux/system/LinuxResources.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class LinuxResourcesTest : public testing::Test {
 protected:
  void write(const std::string& name, std::string_view content) {
    writeFile(folder_.path() / name, content);
  }

  const TemporaryDirectory folder_{"navora-resources"};
  const LinuxResources resources_{folder_.path()};
};

TEST_F(LinuxResourcesTest, ReadsLargeFilesCompletely) {
  const std::string text(3'000'000, 'x');
  write("large.txt", text);
  EXPECT_EQ(resources_.read("large", "txt"), text);
}

TEST_F(LinuxResourcesTest, ReturnsNulloptForAMissingFolder) {
  EXPECT_EQ(LinuxResources("/nonexistent").read("catalog", "json"), std::nullopt);
}

TEST_F(LinuxResourcesTest, ReturnsNulloptForAFolder) {
  std::filesystem::create_directory(folder_.path() / "folder.json");
  EXPECT_EQ(resources_.read("folder", "json"), std::nullopt);
}

}  // namespace
}  // namespace navora
