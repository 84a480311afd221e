#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/linux/system/LinuxUserDefaults.h"
#include "linux/support/EnvironmentVariable.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// File permissions do not restrict root, and tests in containers run as root.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (geteuid() == 0) {
      EXPECT_EQ(seteuid(nobody), 0);
    }
  }
  ~OrdinaryUser() {
    if (getuid() == 0) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t nobody = 65534;
};

class LinuxUserDefaultsTest : public testing::Test {
 protected:
  std::vector<std::string> filesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file_.parent_path()))
      names.push_back(entry.path().filename());
    return names;
  }
  void write(std::string_view content) { writeFile(file_, content); }
  std::string content() const { return readFile(file_); }

  const TemporaryDirectory folder_{"navora-defaults"};
  const std::filesystem::path file_ = folder_.path() / "made" / "defaults.json";
};

TEST_F(LinuxUserDefaultsTest, AreLoadedByTheNextInstance) {
  LinuxUserDefaults(file_).setValue("name", "Zürich");
  LinuxUserDefaults second(file_);
  EXPECT_EQ(second.value("name"), "Zürich");
  second.setValue("number", 2.5);
  second.removeValue("name");
  const LinuxUserDefaults third(file_);
  EXPECT_EQ(third.value("name"), std::nullopt);
  EXPECT_EQ(third.value("number"), 2.5);
}

TEST_F(LinuxUserDefaultsTest, AreKeptInTheUsersConfigurationFolder) {
  const std::filesystem::path expected =
      std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "navora" / "defaults.json";
  LinuxUserDefaults().setValue("key", "value");
  EXPECT_EQ(LinuxUserDefaults(expected).value("key"), "value");
  std::filesystem::remove(expected);
}

TEST_F(LinuxUserDefaultsTest, NoFileIsCreatedBeforeTheFirstChange) {
  LinuxUserDefaults defaults(file_);
  defaults.removeValue("nothing");
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(LinuxUserDefaultsTest, WritingLeavesNoTemporaryFiles) {
  LinuxUserDefaults defaults(file_);
  for (int value = 0; value < 5; ++value)
    defaults.setValue("key", value);
  EXPECT_THAT(filesInFolder(), ElementsAre("defaults.json"));
}

TEST_F(LinuxUserDefaultsTest, EveryChangeReplacesTheFileAtomically) {
  LinuxUserDefaults defaults(file_);
  defaults.setValue("key", "old");
  const auto old = folder_.path() / "old";
  std::filesystem::create_hard_link(file_, old);
  defaults.setValue("key", "new");
  EXPECT_THAT(readFile(old), HasSubstr("\"old\""));
  EXPECT_THAT(content(), HasSubstr("\"new\""));
}

TEST_F(LinuxUserDefaultsTest, OnlyTheUserCanReadTheFile) {
  const mode_t before = umask(0);
  LinuxUserDefaults defaults(file_);
  defaults.setValue("key", 1);
  defaults.setValue("key", 2);
  umask(before);
  EXPECT_EQ(std::filesystem::status(file_).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(LinuxUserDefaultsTest, TextThatIsNotUtf8IsStillWritten) {
  LinuxUserDefaults(file_).setValue("key",
                                    "a\xff"
                                    "b");
  EXPECT_EQ(LinuxUserDefaults(file_).value("key"), "a\uFFFDb");
}

class DamagedDefaultsTest : public LinuxUserDefaultsTest,
                            public testing::WithParamInterface<std::string> {};

TEST_P(DamagedDefaultsTest, AreSetAsideAndReported) {
  write(GetParam());
  testing::internal::CaptureStderr();
  LinuxUserDefaults defaults(file_);
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_THAT(report, HasSubstr(file_.string()));
  EXPECT_THAT(report, HasSubstr("defaults.json.damaged"));
  EXPECT_THAT(filesInFolder(), ElementsAre("defaults.json.damaged"));

  EXPECT_EQ(defaults.value("key"), std::nullopt);
  defaults.setValue("key", "fresh");
  EXPECT_EQ(LinuxUserDefaults(file_).value("key"), "fresh");
  auto aside = file_;
  aside += ".damaged";
  EXPECT_EQ(readFile(aside), GetParam());
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, DamagedDefaultsTest,
                         testing::Values(std::string(), std::string("{\"key\": \"valu"),
                                         std::string("[1, 2]"), std::string("\"text\""),
                                         std::string("null"), std::string("{} {}"),
                                         std::string("{\"key\": \"\xff\"}"),
                                         std::string(4096, '\0'),
                                         "{\"key\": " + std::string(100'000, '[') + "}"));

TEST_F(LinuxUserDefaultsTest, AnUnreadableFileIsReportedAndNotWritten) {
  write("{\"key\": \"old\"}");
  std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
  std::filesystem::permissions(file_.parent_path(), std::filesystem::perms::all);
  std::filesystem::permissions(file_, std::filesystem::perms::none);
  {
    const OrdinaryUser user;
    testing::internal::CaptureStderr();
    LinuxUserDefaults defaults(file_);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(file_.string()));
    defaults.setValue("key", "new");
    EXPECT_EQ(defaults.value("key"), "new");
  }
  std::filesystem::permissions(file_, std::filesystem::perms::owner_read);
  EXPECT_EQ(content(), "{\"key\": \"old\"}");
  EXPECT_THAT(filesInFolder(), ElementsAre("defaults.json"));
}

TEST_F(LinuxUserDefaultsTest, AFolderInPlaceOfTheFileIsReportedAndKept) {
  std::filesystem::create_directories(file_);
  testing::internal::CaptureStderr();
  LinuxUserDefaults defaults(file_);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(file_.string()));
  defaults.setValue("key", 1);
  EXPECT_EQ(defaults.value("key"), 1);
  EXPECT_TRUE(std::filesystem::is_directory(file_));
}

TEST_F(LinuxUserDefaultsTest, AReadOnlyFolderIsReportedAndTheValuesStayInMemory) {
  write("{\"key\": \"old\"}");
  std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
  std::filesystem::permissions(file_, std::filesystem::perms(0644));
  std::filesystem::permissions(file_.parent_path(), std::filesystem::perms(0555));
  {
    const OrdinaryUser user;
    LinuxUserDefaults defaults(file_);
    EXPECT_EQ(defaults.value("key"), "old");
    testing::internal::CaptureStderr();
    defaults.setValue("key", "new");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(file_.string()));
    EXPECT_EQ(defaults.value("key"), "new");
  }
  EXPECT_EQ(content(), "{\"key\": \"old\"}");
  EXPECT_THAT(filesInFolder(), ElementsAre("defaults.json"));
  std::filesystem::permissions(file_.parent_path(), std::filesystem::perms::all);
}

}  // namespace
}  // namespace navora
