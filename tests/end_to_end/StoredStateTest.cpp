#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"
#include "end_to_end/driver/Executables.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

using std::filesystem::perms;

// Files in the user's folders as left by an earlier run, another program or a failing disk.
class StoredStateTest : public TestPageTest {
 protected:
  bool startsApplication() const override { return false; }

  std::filesystem::path defaults() { return desktop().configHome() / "navora/defaults.json"; }
  std::filesystem::path aside() { return desktop().configHome() / "navora/defaults.json.damaged"; }

  void expectSize(int width, int height) {
    const auto content = application().waitForMainWindow().content;
    EXPECT_EQ(content.width, width);
    EXPECT_EQ(content.height, height);
  }

  // The size that the page has in a window without a stored size.
  void expectInitialSize() {
    page().waitUntilTrue("innerWidth === 1240 && innerHeight === 820", "the initial size");
  }

  bool reported(const std::string& text) {
    return application().errorText().find(text) != std::string::npos;
  }
};

struct Content {
  const char* name;
  std::function<std::string()> make;
};

class DamagedDefaultsTest : public StoredStateTest, public testing::WithParamInterface<Content> {};

TEST_P(DamagedDefaultsTest, AreReportedAndSetAsideAndReplaced) {
  const std::string content = GetParam().make();
  writeFile(defaults(), content);
  launch();
  expectInitialSize();
  EXPECT_TRUE(reported("defaults.json: damaged; kept as defaults.json.damaged"));
  EXPECT_TRUE(readFile(aside()) == content);

  desktop().display().resize(application().waitForMainWindow().id, 900, 640);
  // The page has the new width only when the application knows it.
  page().waitUntilTrue("innerWidth === 900", "the window is resized");
  application().restart();
  expectSize(900, 640);
  EXPECT_FALSE(reported("damaged"));
}

INSTANTIATE_TEST_SUITE_P(
    Content, DamagedDefaultsTest,
    testing::Values(Content{"Empty", [] { return std::string(); }},
                    Content{"CutOff",
                            [] { return std::string(R"({"NavoraMainWindow": {"width": 90)"); }},
                    Content{"Binary", [] { return std::string("\0\xFF\xFE\x7F{}", 6); }},
                    Content{"Huge", [] { return std::string(32 << 20, 'x'); }},
                    Content{"Nested", [] { return "{\"a\":" + std::string(1 << 20, '[') + "}"; }},
                    Content{"List", [] { return std::string("[{}]"); }}),
    [](const auto& content) { return content.param.name; });

class OddDefaultsTest : public StoredStateTest, public testing::WithParamInterface<Content> {};

TEST_P(OddDefaultsTest, LeaveTheWindowWithAUsableSize) {
  writeFile(defaults(), R"({"NavoraMainWindow": )" + GetParam().make() + "}");
  launch();
  const auto content = application().waitForMainWindow().content;
  EXPECT_GE(content.width, 760);
  EXPECT_GE(content.height, 560);
  EXPECT_LE(content.width, 1600);
  EXPECT_LE(content.height, 1000);
  EXPECT_FALSE(std::filesystem::exists(aside()));
}

INSTANTIATE_TEST_SUITE_P(
    Window, OddDefaultsTest,
    testing::Values(
        Content{"Number", [] { return std::string("7"); }},
        Content{"Texts", [] { return std::string(R"({"width": "900", "height": "640"})"); }},
        Content{"Negative", [] { return std::string(R"({"width": -900, "height": -640})"); }},
        Content{"Vast", [] { return std::string(R"({"width": 1e300, "height": 1e300})"); }}),
    [](const auto& content) { return content.param.name; });

// A directory in place of the file: not even root can read it.
TEST_F(StoredStateTest, UnreadableDefaultsAreReportedAndLeftAlone) {
  writeFile(defaults() / "kept", "content");
  launch();
  expectInitialSize();
  EXPECT_TRUE(reported("defaults.json: "));
  EXPECT_EQ(readFile(defaults() / "kept"), "content");
  EXPECT_FALSE(std::filesystem::exists(aside()));
}

TEST_F(StoredStateTest, DefaultsWithoutAFolderAreReported) {
  writeFile(desktop().configHome() / "navora", "a file where the folder should be");
  launch();
  expectInitialSize();
  EXPECT_TRUE(reported("defaults.json: "));
}

TEST_F(StoredStateTest, CookiesAreReadableByTheUserOnly) {
  const auto folder = desktop().dataHome() / "navora";
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, perms::all);
  launch();
  signIn();
  waitUntil([&] { return std::filesystem::exists(folder / "cookies.sqlite"); },
            "the cookies are stored");
  EXPECT_EQ(std::filesystem::status(folder).permissions(), perms::owner_all);
}

class EndingTest : public StoredStateTest, public testing::WithParamInterface<int> {
 protected:
  void expectCleanEnd() {
    const auto pages = application().webProcesses();
    EXPECT_FALSE(pages.empty());
    application().process().signal(GetParam());
    EXPECT_EQ(application().process().wait(), (ChildProcess::ExitStatus{0, 0}));
    for (const auto& process : pages)
      waitUntil([&] { return !isAlive(process.pid); }, "the page's process has ended");
  }
};

TEST_P(EndingTest, QuitsTheApplicationCleanly) {
  launch();
  expectCleanEnd();
}

TEST_P(EndingTest, QuitsTheApplicationCleanlyWhileThePageShowsAnAlert) {
  launch();
  page().evaluate("setTimeout(() => alert('Read this')); return true");
  widget("push button", "OK");
  expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(Signal, EndingTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& number) {
                           return std::string("SIG") + sigabbrev_np(number.param);
                         });

}  // namespace
}  // namespace navora::driver
