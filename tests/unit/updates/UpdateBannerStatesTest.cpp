#include <map>
#include <ostream>
#include <set>

#include "support/Json.h"
#include "unit/updates/DesktopUpdatesTest.h"

namespace navora {
namespace {

using Progress = UpdateBannerProgress;

// What the banner shows, by the Russian texts that are the keys of all others. An empty text stands
// for a button that is not there.
struct Shown {
  std::string heading;
  std::string detail;
  std::string primary;
  std::string secondary;
  std::string tertiary;
  bool close = false;
  Progress progress;
};

constexpr const char* version = "2.0 (display)";
constexpr const char* reason = "The page says: wait";

const std::vector<std::pair<std::string, Shown>> scenarios = {
    {"checking",
     {"Проверяем обновления…", "Это займёт несколько секунд.", "", "Отмена", "", false,
      Progress::indeterminate()}},
    {"information only",
     {"Доступна новая версия", "Для этой версии нужна отдельная установка.", "Подробнее", "Позже",
      "", false, Progress()}},
    {"offer",
     {"Доступна Навора {version}", "Обновление установится, и приложение перезапустится.",
      "Обновить приложение", "Отложить на 1 час", "Не показывать больше", true, Progress()}},
    {"resumed",
     {"Доступна Навора {version}", "Обновление установится, и приложение перезапустится.",
      "Обновить приложение", "Позже", "", false, Progress()}},
    {"downloading",
     {"Скачиваем обновление…", "Можно продолжать работу.", "", "Отмена", "", false,
      Progress::indeterminate()}},
    {"extracting",
     {"Готовим обновление…", "Проверяем и распаковываем новую версию.", "", "", "", false,
      Progress::indeterminate()}},
    {"ready",
     {"Обновление готово", "Навора перезапустится после установки.", "Обновить приложение", "Позже",
      "", false, Progress()}},
    {"blocked",
     {"Обновление готово", reason, "Продолжить обновление", "Позже", "", false, Progress()}},
    {"installing",
     {"Устанавливаем обновление…", "Навора сейчас перезапустится.", "", "", "", false,
      Progress::indeterminate()}},
    {"no update",
     {"Обновлений для этого Mac нет", "Можно продолжать работу.", "", "Закрыть", "", false,
      Progress()}},
    {"failed",
     {"Не удалось обновить Навору",
      "Текущая версия продолжает работать. Проверьте связь и попробуйте ещё раз.", "", "Закрыть",
      "", false, Progress()}},
};

std::string inEnglish(const std::string& key) {
  return key == reason || key.empty() ? key : "[" + key + "]";
}

class UpdateStatesTest : public DesktopUpdatesTest {
 protected:
  UpdateStatesTest() {
    Json catalog = Json::object();
    for (const auto& [name, shown] : scenarios) {
      for (const auto& key :
           {shown.heading, shown.detail, shown.primary, shown.secondary, shown.tertiary})
        catalog[key] = inEnglish(key);
    }
    locale.setCatalogs(Json{{"en", catalog}}.dump());
    locale.prefer({"ru"});
    start();
  }

  // Does what leads from the beginning to the state.
  void play(const std::string& name) {
    const std::map<std::string, std::function<void()>> steps = {
        {"checking", [&] { driver().showUserInitiatedUpdateCheck([] {}); }},
        {"information only", [&] { find(information("https://navora.example/")); }},
        {"offer", [&] { find(item()); }},
        {"resumed", [&] { find(item(), false, Stage::downloaded); }},
        {"downloading", [&] { driver().showDownloadInitiated([] {}); }},
        {"extracting", [&] { driver().showDownloadDidStartExtractingUpdate(); }},
        {"ready", [&] { becomeReady(); }},
        {"blocked",
         [&] {
           becomeReady();
           press(Button::primary);
           answerRestart(reason);
         }},
        {"installing", [&] { driver().showInstallingUpdate(true, [] {}); }},
        {"no update", [&] { driver().showUpdateNotFound(error(), [] {}); }},
        {"failed", [&] { driver().showUpdaterError(error(), [] {}); }},
    };
    steps.at(name)();
  }

  void speak(const std::string& language) {
    locale.prefer({language});
    updates->refreshLocale();
  }

  void expectShown(const std::string& name, const Shown& shown, const std::string& language) {
    SCOPED_TRACE(name + " in " + language);
    const auto text = [&](std::string key) {
      if (language == "en") key = inEnglish(key);
      const auto place = key.find("{version}");
      if (place != std::string::npos) key.replace(place, std::string("{version}").size(), version);
      return key;
    };
    EXPECT_FALSE(screen.hidden);
    EXPECT_EQ(heading(), text(shown.heading));
    EXPECT_EQ(detail(), text(shown.detail));
    EXPECT_EQ(screen.progress, shown.progress);
    expectButton(Button::primary, text(shown.primary));
    expectButton(Button::secondary, text(shown.secondary));
    expectButton(Button::tertiary, text(shown.tertiary));
    expectButton(Button::close, shown.close ? "×" : "");
  }

  void expectButton(Button which, const std::string& title) {
    const auto& button = screen.button(which);
    EXPECT_EQ(button.visible ? button.title : "", title);
    EXPECT_TRUE(button.enabled);
  }
};

TEST_F(UpdateStatesTest, AreAllPlayed) {
  EXPECT_EQ(scenarios.size(), std::variant_size_v<UpdateBannerState::Value>);
}

TEST_F(UpdateStatesTest, ShowWhatTheyHaveInEitherLanguage) {
  for (const std::string language : {"ru", "en"}) {
    for (const auto& [name, shown] : scenarios) {
      speak(language);
      play(name);
      expectShown(name, shown, language);
      driver().dismissUpdateInstallation();
    }
  }
}

TEST_F(UpdateStatesTest, FollowTheLanguageWhileTheyAreShown) {
  for (const auto& [name, shown] : scenarios) {
    speak("ru");
    play(name);
    speak("en");
    expectShown(name, shown, "en");
    speak("ru");
    expectShown(name, shown, "ru");
    driver().dismissUpdateInstallation();
  }
}

TEST_F(UpdateStatesTest, FollowEachOtherInAnyOrder) {
  for (const auto& [first, ignored] : scenarios) {
    for (const auto& [second, shown] : scenarios) {
      play(first);
      play(second);
      expectShown(first + ", " + second, shown, "ru");
    }
  }
}

TEST_F(UpdateStatesTest, KeepTheirActionsWhenTheLanguageChanges) {
  play("offer");
  speak("en");
  press(Button::primary);
  EXPECT_EQ(log.take().back(), "reply install");
}

TEST_F(UpdateStatesTest, NameTheMachineAsTheHostDoes) {
  std::string machine = "Mac";
  const auto shown =
      UpdateBannerState::present(UpdateBannerState::UpToDate{}, {[&] { return machine; }});
  EXPECT_EQ(shown.heading(), "Mac");
  machine = "System";
  EXPECT_EQ(shown.heading(), "System");
}

}  // namespace
}  // namespace navora
