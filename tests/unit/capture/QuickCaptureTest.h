#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "capture/DesktopQuickCapture.h"
#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"

namespace navora {

// The panel on a fake platform, with a web view that shows the service to a signed-in user.
class QuickCaptureTest : public testing::Test {
 protected:
  static constexpr const char* hint = "⌘+Enter — отправить, Enter — новая строка";
  static constexpr const char* tooLong = "В записи может быть не больше 10 000 символов.";
  static constexpr const char* offlineText =
      "Нет связи с сервером. Черновик сохранён — попробуйте ещё раз.";
  static constexpr const char* repeatText = "Сервер не подтвердил сохранение. Повторите отправку.";
  static constexpr const char* changedText =
      "Учётная запись изменилась. Вернитесь в прежнюю учётную запись для отправки этого "
      "черновика.";
  static constexpr const char* draftName = "draft.json";
  static constexpr const char* origin = "https://navora.example/";
  static constexpr const char* jobId = "7c9e6679-7425-40de-944b-e07fc1f90ae7";
  static constexpr const char* captureId = "0f8fad5b-d9cb-469f-a165-70867728950e";

  QuickCaptureTest()
      : webView(
            std::make_shared<FakeWebView>(platform.log(), WebViewConfiguration{testUrl(origin)})) {
    webView->setUrl(testUrl(origin));
    webView->cookies = {{"tolvin_session", "abc", "navora.example", "/", true, std::nullopt}};
    platform.workspace().frontmost =
        std::make_shared<FakeRunningApplication>(platform.log(), "Letters");
  }

  void make() {
    capture = std::make_unique<DesktopQuickCapture>(
        DesktopQuickCapture::Dependencies{.backgroundQueue = platform.backgroundQueue(),
                                          .mainQueue = platform.mainQueue(),
                                          .system = platform.system(),
                                          .userDefaults = platform.userDefaults(),
                                          .workspace = platform.workspace(),
                                          .draftFile = platform.makePrivateFile(draftName),
                                          .makeHttpSession =
                                              [this](const auto& configuration) {
                                                return platform.makeHttpSession(configuration);
                                              },
                                          .makePanel =
                                              [this](Size size, CapturePanelDelegate& delegate) {
                                                return platform.makeCapturePanel(size, delegate);
                                              }},
        webView, testUrl(origin));
  }
  // Opens the panel with this draft and empties the log.
  void open(const std::string& draft = {}) {
    if (!capture) make();
    capture->show();
    if (!draft.empty()) editor().type(draft);
    log().take();
  }

  // The same for a new panel without an earlier draft.
  void openAnew(const std::string& draft) {
    capture.reset();
    disk() = {};
    open(draft);
  }

  FakeCapturePanelView& panel() { return platform.capturePanel(); }
  FakeCaptureEditor& editor() { return panel().editor(); }
  FakeHttpSession::Network& network() { return platform.network(); }
  FakePrivateFile::Disk& disk() { return platform.disk(draftName); }
  FakeMainQueue& queue() { return platform.mainQueue(); }
  EventLog& log() { return platform.log(); }

  const HttpRequest& lastRequest() { return network().requests.back(); }
  Json lastBody() { return Json::parse(lastRequest().body); }

  // The steps of a submission, in order.
  void answerCookies() { webView->answerCookies(); }
  void answerAccount(const std::string& id = "user-1") {
    network().answer(200, Json{{"user", {{"id", id}}}}.dump());
  }
  void answerModel(const Json& model = Json::object()) {
    webView->finishEvaluation(model);
    storeDraft();
  }
  // Lets the background write what is due.
  void storeDraft() { platform.backgroundQueue().finishAll(); }
  void answerConfirmation() { network().answer(202, confirmation().dump()); }
  static Json confirmation() {
    return {{"captureId", captureId},
            {"jobId", jobId},
            {"statusUrl", std::string("/api/jobs/") + jobId}};
  }

  // Submits the note and answers every step before the post.
  void submitUntilPost() {
    capture->submit();
    answerCookies();
    answerAccount();
    answerModel();
  }
  // Submits again while an attempt exists, and answers every step before the post.
  void resubmitUntilPost() {
    capture->submit();
    answerCookies();
    answerAccount();
    storeDraft();
  }

  // Flushes the queued telemetry and returns its events.
  std::vector<Json> flushTelemetry() {
    queue().advance(std::chrono::seconds(2));
    answerCookies();
    const Json body = lastBody();
    network().answer(204, "");
    return body.at("events");
  }
  std::vector<std::string> telemetryNames() {
    std::vector<std::string> names;
    for (const Json& event : flushTelemetry())
      names.push_back(event.at("event"));
    return names;
  }

  LocaleScope locale;
  FakePlatform platform;
  std::shared_ptr<FakeWebView> webView;
  std::unique_ptr<DesktopQuickCapture> capture;
};

}  // namespace navora
