#include <string>

#include <gtest/gtest.h>

#include "capture/QuickCapturePolicy.h"
#include "fakes/TestUrl.h"
#include "platform/KeyEvent.h"

namespace navora {
namespace {

constexpr const char* uuid = "0f8fad5b-d9cb-469f-a165-70867728950e";
constexpr const char* otherUuid = "7c9e6679-7425-40de-944b-e07fc1f90ae7";

std::string times(const std::string& text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index)
    result += text;
  return result;
}

bool submits(std::uint16_t key, std::uint32_t modifiers, bool composing = false) {
  return QuickCapturePolicy::shouldSubmit(key, modifiers, composing);
}

TEST(QuickCapturePolicyShouldSubmit, AcceptsReturnAndEnterWithCommandOrControl) {
  for (const std::uint16_t key : {KeyEvent::returnKey, KeyEvent::keypadEnterKey}) {
    EXPECT_TRUE(submits(key, KeyEvent::command));
    EXPECT_TRUE(submits(key, KeyEvent::control));
    EXPECT_TRUE(submits(key, KeyEvent::command | KeyEvent::control));
    EXPECT_TRUE(submits(key, KeyEvent::command | KeyEvent::shift | KeyEvent::option |
                                 KeyEvent::capsLock | KeyEvent::function));
  }
}

TEST(QuickCapturePolicyShouldSubmit, LeavesTheKeyToAComposingInputMethod) {
  EXPECT_FALSE(submits(KeyEvent::returnKey, KeyEvent::command, true));
  EXPECT_FALSE(submits(KeyEvent::keypadEnterKey, KeyEvent::control, true));
}

TEST(QuickCapturePolicyShouldSubmit, LeavesLineBreaksToTheEditor) {
  EXPECT_FALSE(submits(KeyEvent::returnKey, 0));
  EXPECT_FALSE(submits(KeyEvent::returnKey, KeyEvent::shift));
  EXPECT_FALSE(submits(KeyEvent::returnKey, KeyEvent::option));
  EXPECT_FALSE(submits(KeyEvent::keypadEnterKey, KeyEvent::numericPad));
}

TEST(QuickCapturePolicyShouldSubmit, RejectsEveryOtherKey) {
  constexpr std::uint16_t letterS = 1;
  EXPECT_FALSE(submits(letterS, KeyEvent::command));
  EXPECT_FALSE(submits(KeyEvent::spaceKey, KeyEvent::command));
  EXPECT_FALSE(submits(KeyEvent::escapeKey, KeyEvent::control));
  EXPECT_FALSE(submits(KeyEvent::otherKey, KeyEvent::command));
}

TEST(QuickCapturePolicyValidText, AcceptsOneToTenThousandUnits) {
  EXPECT_FALSE(QuickCapturePolicy::validText(""));
  EXPECT_TRUE(QuickCapturePolicy::validText("a"));
  EXPECT_TRUE(QuickCapturePolicy::validText(times("a", 10'000)));
  EXPECT_FALSE(QuickCapturePolicy::validText(times("a", 10'001)));
}

TEST(QuickCapturePolicyValidText, CountsUtf16Units) {
  EXPECT_TRUE(QuickCapturePolicy::validText(times("\U0001F642", 5'000)));
  EXPECT_FALSE(QuickCapturePolicy::validText(times("\U0001F642", 5'001)));
  EXPECT_TRUE(QuickCapturePolicy::validText(times("e\u0301", 5'000)));
  EXPECT_FALSE(QuickCapturePolicy::validText(times("e\u0301", 5'000) + "e"));
}

TEST(QuickCapturePolicyValidText, DoesNotTrim) {
  EXPECT_TRUE(QuickCapturePolicy::validText(" \n"));
}

Json reply() {
  return {
      {"captureId", otherUuid}, {"jobId", uuid}, {"statusUrl", std::string("/api/jobs/") + uuid}};
}

bool confirmed(const Json& json, const std::string& origin = "https://navora.example/") {
  return QuickCapturePolicy::confirmed(json, testUrl(origin));
}

Json with(const std::string& key, const Json& value) {
  Json changed = reply();
  changed[key] = value;
  return changed;
}

TEST(QuickCapturePolicyConfirmed, ReadsThreeKeysAndIgnoresOthers) {
  EXPECT_TRUE(confirmed(reply()));
  EXPECT_TRUE(confirmed(with("more", {1, 2, 3})));
  EXPECT_TRUE(confirmed(with("error", {{"message", "no"}})));
}

TEST(QuickCapturePolicyConfirmed, AcceptsAnAbsoluteStatusUrlOfTheService) {
  const std::string path = std::string("/api/jobs/") + uuid;
  EXPECT_TRUE(confirmed(with("statusUrl", "https://navora.example" + path)));
  EXPECT_TRUE(confirmed(with("statusUrl", "https://NAVORA.example:443" + path)));
  EXPECT_TRUE(confirmed(with("statusUrl", "//navora.example" + path)));
  EXPECT_TRUE(confirmed(with("statusUrl", path), "http://127.0.0.1:8878/"));
  EXPECT_FALSE(confirmed(with("statusUrl", "https://navora.example/x/.." + path)));
  EXPECT_FALSE(confirmed(with("statusUrl", "https://navora.example/." + path)));
}

TEST(QuickCapturePolicyConfirmed, RequiresEveryKeyAsText) {
  EXPECT_FALSE(confirmed(Json::object()));
  EXPECT_FALSE(confirmed(Json()));
  EXPECT_FALSE(confirmed(Json::array({reply()})));
  for (const char* key : {"captureId", "jobId", "statusUrl"}) {
    Json missing = reply();
    missing.erase(key);
    EXPECT_FALSE(confirmed(missing)) << key;
    for (const Json& value : {Json(7), Json(), Json(true), Json::array({uuid}), Json("")}) {
      EXPECT_FALSE(confirmed(with(key, value))) << key << value;
    }
  }
}

TEST(QuickCapturePolicyConfirmed, RequiresUuids) {
  for (const std::string text :
       {"wrong", "0f8fad5bd9cb469fa16570867728950e", "{0f8fad5b-d9cb-469f-a165-70867728950e}",
        "0f8fad5b-d9cb-469f-a165-70867728950g", "0f8fad5b-d9cb-469f-a165-70867728950",
        "0f8fad5b-d9cb-469f-a165-70867728950e ", "0f8fad5b0d9cb-469f-a165-70867728950e"}) {
    EXPECT_FALSE(confirmed(with("captureId", text))) << text;
    Json job = with("jobId", text);
    job["statusUrl"] = "/api/jobs/" + text;
    EXPECT_FALSE(confirmed(job)) << text;
  }
  EXPECT_TRUE(confirmed(with("captureId", "0F8FAD5B-D9CB-469F-A165-70867728950E")));
}

TEST(QuickCapturePolicyConfirmed, RequiresTheStatusUrlOfTheSameJob) {
  const std::string path = std::string("/api/jobs/") + uuid;
  for (const std::string& url :
       {std::string("/api/jobs/") + otherUuid, path + "?x=1", path + "#a", path + "?", path + "#",
        path + "/", "/api//jobs/" + std::string(uuid), "/jobs/" + std::string(uuid),
        std::string("/api/jobs/0F8FAD5B-D9CB-469F-A165-70867728950E"), std::string("api/jobs")}) {
    EXPECT_FALSE(confirmed(with("statusUrl", url))) << url;
  }
  Json upper = with("jobId", "0F8FAD5B-D9CB-469F-A165-70867728950E");
  EXPECT_FALSE(confirmed(upper));
}

TEST(QuickCapturePolicyConfirmed, RequiresAStatusUrlOfTheSameOrigin) {
  const std::string path = std::string("/api/jobs/") + uuid;
  for (const std::string base :
       {"https://remote.example", "http://navora.example", "https://navora.example:444",
        "https://user@navora.example", "//remote.example", "ftp://navora.example",
        "https://navora.example.remote.example", "javascript:"}) {
    EXPECT_FALSE(confirmed(with("statusUrl", base + path))) << base;
  }
  EXPECT_FALSE(confirmed(with("statusUrl", "http://[" + path)));
}

TEST(QuickCapturePolicyReadReceipt, ReturnsTheIdsOfAConfirmation) {
  const Url origin = testUrl("https://navora.example/");
  const std::string captureId = "7C9E6679-7425-40de-944b-e07fc1f90ae7";
  EXPECT_EQ(QuickCapturePolicy::readReceipt(with("captureId", captureId), origin),
            (QuickCapturePolicy::Receipt{captureId, uuid}));
  EXPECT_EQ(QuickCapturePolicy::readReceipt(with("captureId", "other"), origin), std::nullopt);
}

TEST(QuickCapturePolicySelfTest, PrintsOneLineAndReturns) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  QuickCapturePolicy::selfTest();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "PASS: quick capture policy (11 checks)\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace navora
