#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"

namespace navora::driver {
namespace {

Json settingsAnswer(const Json& settings) {
  return {{"status", 200}, {"body", Json{{"settings", settings}}.dump()}};
}

// The language from the service's settings, on a page in Russian.
class SettingsLanguageTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (HasFatalFailure()) return;
    serviceClient().addFault("GET", "/api/settings", settingsAnswer({{"locale", "ru"}}));
    openTestPage("bridge.html");
    expectTitle("Навора");
  }

  void expectTitle(const std::string& title) {
    waitUntil([&] { return hasWidget("frame", title); }, "the window is called " + title);
  }

  void answerWith(const Json& action) {
    serviceClient().clearFaults();
    serviceClient().addFault("GET", "/api/settings", action);
  }

  // Waits until the page has loaded the settings and the application has handled its messages.
  void synchronize() { page().evaluate("await synchronize(); await roundTrip()"); }
};

TEST_F(SettingsLanguageTest, FollowsEveryChangeOfTheChosenLanguage) {
  for (const std::string locale : {"de", "ru", "ja", "ru", "en"}) {
    answerWith(settingsAnswer({{"locale", locale}}));
    synchronize();
    EXPECT_TRUE(hasWidget("frame", locale == "ru" ? "Навора" : "Navora")) << locale;
  }
}

TEST_F(SettingsLanguageTest, SpeaksTheWordsOfTheDesktop) {
  for (const auto& [locale, view] : {std::pair{"de", "Ansicht"}, std::pair{"fr", "Affichage"}}) {
    answerWith(settingsAnswer({{"locale", locale}}));
    synchronize();
    EXPECT_TRUE(hasWidget("menu", view));
  }
}

TEST_F(SettingsLanguageTest, FollowsTheSystemWhenTheSettingSaysSo) {
  answerWith(settingsAnswer({{"locale", "system"}, {"detectedLocale", "ru"}}));
  synchronize();
  EXPECT_TRUE(hasWidget("frame", "Navora"));
}

TEST_F(SettingsLanguageTest, IsRefreshedWhenTheTimeZoneSettingIsSaved) {
  answerWith(settingsAnswer({{"locale", "en"}}));
  page().evaluate("window.dispatchEvent(new Event('tolvin:timezonesaved'))");
  expectTitle("Navora");
}

TEST_F(SettingsLanguageTest, DropsAReplyThatANewerRequestHasOvertaken) {
  serviceClient().clearFaults();
  serviceClient().addFault("GET", "/api/settings", {{"hang", true}}, 1);
  serviceClient().addFault("GET", "/api/settings", settingsAnswer({{"locale", "en"}}), 1);
  serviceClient().clearRequests();
  page().evaluate("window.overtaken = synchronize(); void 0");
  serviceClient().waitForRequests("GET", "/api/settings");
  EXPECT_TRUE(hasWidget("frame", "Навора"));
  synchronize();
  EXPECT_TRUE(hasWidget("frame", "Navora"));
  serviceClient().clearFaults();
  page().evaluate("await window.overtaken; await roundTrip()");
  EXPECT_TRUE(hasWidget("frame", "Navora"));
}

struct Answer {
  const char* name;
  Json action;
};

class RefusedSettingsTest : public SettingsLanguageTest, public testing::WithParamInterface<int> {};

TEST_P(RefusedSettingsTest, FollowsTheSystem) {
  answerWith({{"status", GetParam()}, {"body", R"({"settings": {"locale": "ru"}})"}});
  synchronize();
  EXPECT_TRUE(hasWidget("frame", "Navora"));
}

INSTANTIATE_TEST_SUITE_P(Status, RefusedSettingsTest, testing::Values(401, 404, 500, 503),
                         testing::PrintToStringParamName());

class UnusableSettingsTest : public SettingsLanguageTest,
                             public testing::WithParamInterface<Answer> {};

TEST_P(UnusableSettingsTest, ChangesNothing) {
  answerWith(GetParam().action);
  synchronize();
  EXPECT_TRUE(hasWidget("frame", "Навора"));
  answerWith(settingsAnswer({{"locale", "en"}}));
  synchronize();
  EXPECT_TRUE(hasWidget("frame", "Navora"));
}

INSTANTIATE_TEST_SUITE_P(
    Answer, UnusableSettingsTest,
    testing::Values(Answer{"Garbage", {{"garbage", true}}}, Answer{"Nothing", {{"drop", "before"}}},
                    Answer{"NoJson", {{"status", 200}, {"body", "<html>"}}},
                    Answer{"Empty", {{"status", 200}, {"body", ""}}},
                    Answer{"Null", {{"status", 200}, {"body", "null"}}},
                    Answer{"UnknownLanguage", settingsAnswer({{"locale", "xx"}})},
                    Answer{"UnknownDetectedLanguage",
                           settingsAnswer({{"locale", "en"}, {"detectedLocale", "xx"}})},
                    Answer{"LanguageOfAnotherType", settingsAnswer({{"locale", {{"name", "en"}}}})},
                    Answer{"DetectedLanguageOfAnotherType",
                           settingsAnswer({{"locale", "en"}, {"detectedLocale", true}})},
                    Answer{"Oversized", settingsAnswer({{"locale", std::string(3 << 20, 'x')}})}),
    [](const auto& answer) { return std::string(answer.param.name); });

// A desktop without a language: empty variables count as unset.
class PosixLocaleTest : public TestPageTest, public testing::WithParamInterface<const char*> {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LANG", GetParam()}}};
  }
};

TEST_P(PosixLocaleTest, ShowsTheInterfaceInEnglish) {
  EXPECT_EQ(application().waitForMainWindow().title, "Navora");
  EXPECT_TRUE(hasWidget("menu", "Edit"));
}

INSTANTIATE_TEST_SUITE_P(Locale, PosixLocaleTest, testing::Values("C", "C.UTF-8", "POSIX", ""),
                         [](const auto& locale) {
                           const std::string name = locale.param;
                           return name.empty() ? "None"
                                               : name.substr(0, name.find('.')) +
                                                     (name.size() > 5 ? "Utf8" : "");
                         });

}  // namespace
}  // namespace navora::driver
