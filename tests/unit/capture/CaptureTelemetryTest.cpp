#include <gmock/gmock.h>

#include "capture/CaptureTelemetry.h"
#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CaptureTelemetryTest : public QuickCaptureTest {
 protected:
  void passTime(double seconds) {
    platform.system().time += std::chrono::duration<double>(seconds);
  }
};

TEST_F(CaptureTelemetryTest, DescribesEveryEvent) {
  make();
  capture->show();
  const auto events = flushTelemetry();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0], (Json{{"event", "native_opened"},
                             {"flowId", "00000000-0000-4000-8000-abcdef000002"},
                             {"browserSessionId", "00000000-0000-4000-8000-abcdef000001"},
                             {"surface", "mac_native"},
                             {"view", "today"},
                             {"seq", 1},
                             {"clientAt", "2023-11-14T22:13:20Z"}}));
}

TEST_F(CaptureTelemetryTest, PostsABatchWithOnlyTheCookie) {
  make();
  capture->show();
  flushTelemetry();
  EXPECT_EQ(lastRequest().method, "POST");
  EXPECT_EQ(lastRequest().url, testUrl("https://navora.example/api/telemetry"));
  EXPECT_EQ(lastRequest().timeoutSeconds, 60);
  EXPECT_THAT(lastRequest().headers, ElementsAre(Pair("Cookie", "tolvin_session=abc"),
                                                 Pair("Content-Type", "application/json")));
}

TEST_F(CaptureTelemetryTest, WaitsTwoSecondsAndSendsNothingWithoutEvents) {
  make();
  queue().advance(std::chrono::minutes(10));
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  capture->show();
  queue().advance(std::chrono::milliseconds(1999));
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  queue().advance(std::chrono::milliseconds(1));
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(CaptureTelemetryTest, CollapsesConsecutiveInputEventsIntoTheLast) {
  open();
  flushTelemetry();
  std::string text;
  for (int count = 0; count < 100; ++count) {
    text += "a";
    editor().type(text + "  ");
  }
  const auto events = flushTelemetry();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].at("event"), "native_input");
  EXPECT_EQ(events[0].at("inputChars"), 100);
  EXPECT_EQ(events[0].at("inputCount"), 100);
  EXPECT_EQ(events[0].at("seq"), 101);
}

TEST_F(CaptureTelemetryTest, KeepsTheNewestFortyEvents) {
  make();
  for (int count = 0; count < 45; ++count) {
    capture->show();
    capture->hideForRestart();
  }
  const auto events = flushTelemetry();
  ASSERT_EQ(events.size(), 40u);
  EXPECT_EQ(events.front().at("seq"), 6);
  EXPECT_EQ(events.back().at("seq"), 45);
}

TEST_F(CaptureTelemetryTest, ReportsLengthsInUtf16UnitsUpToTheLimit) {
  open();
  editor().type(std::string(10'050, 'a'));
  capture->hide(false);
  const auto events = flushTelemetry();
  EXPECT_EQ(events[1].at("inputChars"), 10'000);
  EXPECT_EQ(events[2].at("event"), "native_abandoned");
  EXPECT_EQ(events[2].at("inputChars"), 10'000);
}

TEST_F(CaptureTelemetryTest, ReportsAbandonedTextsUntrimmedAndSkipsEmptyOnes) {
  open();
  capture->hide(false);
  EXPECT_THAT(telemetryNames(), ElementsAre("native_opened"));
  open(" \U0001F642 ");
  capture->hide(true);
  const auto events = flushTelemetry();
  EXPECT_EQ(events.back().at("event"), "native_abandoned");
  EXPECT_EQ(events.back().at("inputChars"), 4);
}

TEST_F(CaptureTelemetryTest, MeasuresDurationsFromTheFirstOpening) {
  make();
  passTime(100);
  capture->show();
  passTime(1.5);
  editor().type("Note");
  capture->hide(false);
  passTime(10);
  capture->show();
  capture->submit();
  // The submission requested the cookies before the telemetry did.
  answerCookies();
  const auto events = flushTelemetry();
  const Json& submit = events.back();
  EXPECT_EQ(submit.at("event"), "native_submit");
  EXPECT_EQ(submit.at("inputChars"), 4);
  EXPECT_NEAR(submit.at("durationMs").get<double>(), 11'500, 0.01);
}

TEST_F(CaptureTelemetryTest, ReportsAnAcceptedNoteAndStartsANewFlow) {
  open("Note");
  submitUntilPost();
  answerConfirmation();
  open("Next");
  const auto events = flushTelemetry();
  std::vector<std::string> names;
  for (const Json& event : events)
    names.push_back(event.at("event"));
  EXPECT_THAT(names, ElementsAre("native_opened", "native_input", "native_submit",
                                 "native_accepted", "native_opened", "native_input"));
  EXPECT_EQ(events[3].at("captureId"), captureId);
  EXPECT_EQ(events[3].at("jobId"), jobId);
  EXPECT_EQ(events[3].at("flowId"), events[0].at("flowId"));
  EXPECT_NE(events[4].at("flowId"), events[0].at("flowId"));
  EXPECT_EQ(events[5].at("inputCount"), 1);
}

TEST_F(CaptureTelemetryTest, DropsABatchWithoutASession) {
  open("Note");
  webView->cookies.clear();
  queue().advance(std::chrono::seconds(2));
  answerCookies();
  EXPECT_THAT(network().requests, IsEmpty());
  webView->cookies = {{"tolvin_session", "abc", "navora.example", "/", true, std::nullopt}};
  editor().type("More");
  const auto events = flushTelemetry();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].at("seq"), 3);
}

TEST_F(CaptureTelemetryTest, DropsABatchThatFails) {
  open();
  queue().advance(std::chrono::seconds(2));
  answerCookies();
  editor().type("Note");
  network().fail(PlatformError::timedOutCode);
  EXPECT_THAT(telemetryNames(), ElementsAre("native_input"));
}

TEST_F(CaptureTelemetryTest, SendsOneBatchAtATime) {
  open();
  queue().advance(std::chrono::seconds(2));
  answerCookies();
  editor().type("Note");
  queue().advance(std::chrono::minutes(1));
  EXPECT_EQ(network().requests.size(), 1u);
  network().answer(500, "");
  EXPECT_THAT(telemetryNames(), ElementsAre("native_input"));
}

TEST_F(CaptureTelemetryTest, IsCancelledWhenTheControllerIsDestroyed) {
  open();
  capture.reset();
  queue().advance(std::chrono::seconds(2));
  EXPECT_EQ(webView->cookieQuestions(), 0u);
}

}  // namespace
}  // namespace navora
