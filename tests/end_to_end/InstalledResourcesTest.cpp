#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include <gmock/gmock.h>

#include "end_to_end/TestPageTest.h"
#include "end_to_end/driver/Executables.h"
#include "end_to_end/driver/UpdatableInstallation.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

using testing::HasSubstr;

// An installation whose files the test can damage.
class InstalledResourcesTest : public TestPageTest {
 protected:
  bool startsApplication() const override { return false; }
  ApplicationProcess::Options applicationOptions() const override {
    return {.executable = prefix_.path() / "bin/navora"};
  }

  void SetUp() override {
    const auto original = applicationExecutable();
    std::filesystem::create_directories(prefix_.path() / "bin");
    std::filesystem::copy_file(original, prefix_.path() / "bin/navora");
    writeFile(catalog(), readFile(original.parent_path() / "../share/navora/i18n-catalog.json"));
    TestPageTest::SetUp();
  }

  std::filesystem::path prefix() const { return prefix_.path(); }
  std::filesystem::path resource(const std::string& name) const {
    return prefix_.path() / "share/navora" / name;
  }
  std::filesystem::path catalog() const { return resource("i18n-catalog.json"); }

  void expectWorkingBridge() {
    EXPECT_NE(page().evaluate("return window.zoneAtFirstScript ?? null"), Json());
    page().evaluate("await roundTrip()");
    EXPECT_EQ(page().evaluate("return typeof window.webkit"), "object");
  }

  void expectOverlay(const std::string& title) {
    service().stop();
    application().start();
    application().waitForMainWindow();
    widget("label", title);
  }

 private:
  TemporaryDirectory prefix_{"navora-installation"};
};

TEST_F(InstalledResourcesTest, ACopyOfTheInstallationSpeaksTheUsersLanguage) {
  expectOverlay("Navora is unavailable right now");
  EXPECT_TRUE(hasWidget("frame", "Navora"));
}

TEST_F(InstalledResourcesTest, ScriptsOfTheInstallationRunInThePage) {
  writeFile(resource("RestartGuard.js"),
            "window.guard = typeof window.zoneAtFirstScript === 'undefined' ? 'first' : 'late';");
  writeFile(resource("CaptureAppearance.js"), "window.appearance = document.readyState;");
  launch();
  openBridgePage();
  EXPECT_EQ(page().evaluate("return window.guard"), "first");
  EXPECT_EQ(page().evaluate("return window.appearance"), "interactive");
  expectWorkingBridge();
}

TEST_F(InstalledResourcesTest, MissingScriptsAreLeftOut) {
  launch();
  openBridgePage();
  expectWorkingBridge();
}

TEST_F(InstalledResourcesTest, UnreadableScriptsAreLeftOut) {
  writeFile(resource("RestartGuard.js"), "window.guard = 'ran'; // \xC3\x28");
  std::filesystem::create_directories(resource("CaptureAppearance.js"));
  launch();
  openBridgePage();
  EXPECT_EQ(page().evaluate("return typeof window.guard"), "undefined");
  expectWorkingBridge();
}

TEST_F(InstalledResourcesTest, AFailingScriptDoesNotStopTheOthers) {
  writeFile(resource("RestartGuard.js"), "window.guard = 'ran'; throw new Error('failed');");
  writeFile(resource("CaptureAppearance.js"), "this is no script }");
  launch();
  openBridgePage();
  EXPECT_EQ(page().evaluate("return window.guard"), "ran");
  expectWorkingBridge();
}

struct Damage {
  const char* name;
  std::function<void(const std::filesystem::path&)> apply;
};

class DamagedCatalogTest : public InstalledResourcesTest,
                           public testing::WithParamInterface<Damage> {};

TEST_P(DamagedCatalogTest, ShowsTheTextsInRussian) {
  GetParam().apply(catalog());
  expectOverlay("Навора пока недоступна");
  EXPECT_TRUE(hasWidget("frame", "Навора"));
  EXPECT_TRUE(hasWidget("push button", "Попробовать снова"));
}

INSTANTIATE_TEST_SUITE_P(
    Catalog, DamagedCatalogTest,
    testing::Values(Damage{"Missing", [](const auto& file) { std::filesystem::remove(file); }},
                    Damage{"Empty", [](const auto& file) { writeFile(file, ""); }},
                    Damage{"CutOff",
                           [](const auto& file) {
                             std::filesystem::resize_file(file,
                                                          std::filesystem::file_size(file) / 2);
                           }},
                    Damage{"InvalidText",
                           [](const auto& file) { writeFile(file, readFile(file) + "\xFF"); }},
                    Damage{"List", [](const auto& file) { writeFile(file, "[]"); }}),
    [](const auto& damage) { return damage.param.name; });

// The install rules put every file where the program looks for it.
TEST_F(InstalledResourcesTest, TheBuildInstallsWhatTheProgramNeeds) {
  std::filesystem::remove_all(prefix() / "bin");
  std::filesystem::remove_all(prefix() / "share");
  installBuild(prefix());
  const auto entry = prefix() / "share/applications/example.navora.Navora.desktop";
  ASSERT_TRUE(std::filesystem::exists(entry));
  EXPECT_TRUE(std::filesystem::exists(resource("linux/i18n-catalog.json")));
  expectOverlay("Navora is unavailable right now");
  // The desktop finds the entry of a window by its class.
  const auto window = application().waitForMainWindow();
  EXPECT_THAT(readFile(entry), HasSubstr("StartupWMClass=" + window.instanceName + "\n"));
  EXPECT_TRUE(desktop().display().connection().hasProperty(window.id, "_NET_WM_ICON"));
}

}  // namespace
}  // namespace navora::driver
