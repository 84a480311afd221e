#include <functional>
#include <map>
#include <string>
#include <variant>

#include "support/Json.h"
#include "tests/support/UpdateBannerScenarios.h"
#include "unit/updates/DesktopUpdatesTest.h"

namespace navora {
namespace {

using Scenario = UpdateBannerScenario;

std::string inEnglish(const std::string& key) {
  // The application's message arrives translated.
  return key == Scenario::blockedMessage || key.empty() ? key : "[" + key + "]";
}

class UpdateBannerStatesTest : public DesktopUpdatesTest {
 protected:
  UpdateBannerStatesTest() {
    upToDate = Scenario::upToDateHeading;
    Json catalog = Json::object();
    for (const Scenario& scenario : updateBannerScenarios()) {
      const auto& shown = scenario.shown;
      for (const auto& key :
           {shown.heading, shown.detail, shown.primary, shown.secondary, shown.tertiary})
        catalog[key] = inEnglish(key);
    }
    locale.setCatalogs(Json{{"en", catalog}}.dump());
    locale.prefer({"ru"});
    start();
  }

  static AppcastItem release() { return {"2.0", Scenario::displayVersion, std::nullopt, false}; }

  // Makes the updater and the user take the steps that lead to the state.
  void play(const std::string& name) {
    const std::map<std::string, std::function<void()>> steps = {
        {"checking", [&] { driver().showUserInitiatedUpdateCheck([] {}); }},
        {"information-only", [&] { find(information("https://navora.example/")); }},
        {"offer", [&] { find(release()); }},
        {"resumed", [&] { find(release(), false, Stage::downloaded); }},
        {"downloading", [&] { driver().showDownloadInitiated([] {}); }},
        {"extracting", [&] { driver().showDownloadDidStartExtractingUpdate(); }},
        {"ready", [&] { becomeReady(); }},
        {"blocked",
         [&] {
           becomeReady();
           press(Button::primary);
           answerRestart(Scenario::blockedMessage);
         }},
        {"installing", [&] { driver().showInstallingUpdate(true, [] {}); }},
        {"up-to-date", [&] { driver().showUpdateNotFound(error(), [] {}); }},
        {"failed", [&] { driver().showUpdaterError(error(), [] {}); }},
    };
    steps.at(name)();
  }

  void speak(const std::string& language) {
    locale.prefer({language});
    updates->refreshLocale();
  }

  void expectShown(const Scenario::Shown& shown, const std::string& language) {
    expectShown(screen, shown, language);
  }
  static void expectShown(const FakeUpdateBannerView::Screen& banner, const Scenario::Shown& shown,
                          const std::string& language) {
    const auto text = [&](std::string key) {
      if (language == "en") key = inEnglish(key);
      const auto place = key.find("{version}");
      if (place != std::string::npos)
        key.replace(place, std::string("{version}").size(), Scenario::displayVersion);
      return key;
    };
    const auto expectButton = [&](Button which, const std::string& title) {
      expectButtonShown(banner.button(which), title);
    };
    EXPECT_FALSE(banner.hidden);
    EXPECT_EQ(banner.content.title, text(shown.heading));
    EXPECT_EQ(banner.content.detail, text(shown.detail));
    EXPECT_EQ(banner.progress, shown.progress);
    expectButton(Button::primary, text(shown.primary));
    expectButton(Button::secondary, text(shown.secondary));
    expectButton(Button::tertiary, text(shown.tertiary));
    expectButton(Button::close, shown.close ? "×" : "");
  }

  static void expectButtonShown(const UpdateBannerContent::Button& button,
                                const std::string& title) {
    EXPECT_EQ(button.visible ? button.title : "", title);
    EXPECT_TRUE(button.enabled);
  }
};

TEST_F(UpdateBannerStatesTest, AllHaveAScenario) {
  const auto& scenarios = updateBannerScenarios();
  ASSERT_EQ(scenarios.size(), std::variant_size_v<UpdateBannerState::Value>);
  for (std::size_t index = 0; index < scenarios.size(); ++index)
    EXPECT_EQ(scenarios[index].makeState({}).index(), index) << scenarios[index].name;
}

TEST_F(UpdateBannerStatesTest, ShowTheirTextsAndButtonsInBothLanguages) {
  for (const std::string language : {"ru", "en"}) {
    for (const Scenario& scenario : updateBannerScenarios()) {
      SCOPED_TRACE(scenario.name + " in " + language);
      speak(language);
      play(scenario.name);
      expectShown(scenario.shown, language);
      driver().dismissUpdateInstallation();
    }
  }
}

TEST_F(UpdateBannerStatesTest, FollowTheLanguageWhileTheyAreShown) {
  for (const Scenario& scenario : updateBannerScenarios()) {
    SCOPED_TRACE(scenario.name);
    speak("ru");
    play(scenario.name);
    speak("en");
    expectShown(scenario.shown, "en");
    speak("ru");
    expectShown(scenario.shown, "ru");
    driver().dismissUpdateInstallation();
  }
}

TEST_F(UpdateBannerStatesTest, FollowEachOtherInAnyOrder) {
  for (const Scenario& first : updateBannerScenarios()) {
    for (const Scenario& second : updateBannerScenarios()) {
      SCOPED_TRACE(first.name + ", " + second.name);
      play(first.name);
      play(second.name);
      expectShown(second.shown, "ru");
    }
  }
}

TEST_F(UpdateBannerStatesTest, ArePresentedByTheirScenarios) {
  FakeUpdateBannerView::Screen sample;
  UpdateBanner banner(std::make_unique<FakeUpdateBannerView>(sample));
  for (const Scenario& scenario : updateBannerScenarios()) {
    SCOPED_TRACE(scenario.name);
    scenario.present(banner);
    Scenario::Shown shown = scenario.shown;
    if (scenario.progress) shown.progress = Progress::ofFraction(*scenario.progress);
    expectShown(sample, shown, "ru");
  }
}

TEST_F(UpdateBannerStatesTest, RunTheActionThatTheirScenarioIsGiven) {
  FakeUpdateBannerView::Screen sample;
  UpdateBanner banner(std::make_unique<FakeUpdateBannerView>(sample));
  for (const Scenario& scenario : updateBannerScenarios()) {
    for (const auto button :
         {Button::primary, Button::secondary, Button::tertiary, Button::close}) {
      int presses = 0;
      scenario.present(banner, [&] { ++presses; });
      if (!sample.button(button).visible) continue;
      sample.press(button);
      EXPECT_EQ(presses, 1) << scenario.name;
    }
  }
}

TEST_F(UpdateBannerStatesTest, KeepTheirActionsWhenTheLanguageChanges) {
  play("offer");
  speak("en");
  press(Button::primary);
  EXPECT_EQ(log.take().back(), "reply install");
}

TEST_F(UpdateBannerStatesTest, AskTheHostForItsTextEveryTimeItIsShown) {
  std::string machine = "Mac";
  const auto shown = UpdateBannerState::present(
      UpdateBannerState::UpToDate{.heading = [&] { return machine; }, .close = {}});
  EXPECT_EQ(shown.heading(), "Mac");
  machine = "System";
  EXPECT_EQ(shown.heading(), "System");
}

}  // namespace
}  // namespace navora
