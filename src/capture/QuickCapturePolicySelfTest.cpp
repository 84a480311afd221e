#include <cstdint>
#include <string>

#include "capture/QuickCapturePolicy.h"
#include "origin/DesktopOrigin.h"
#include "platform/KeyEvent.h"
#include "support/SelfTest.h"

namespace navora {
namespace {

constexpr const char* jobId = "00000000-0000-4000-8000-000000000001";

// Reports every failure with the same text, which names the policy.
class PolicyTest {
 public:
  void check(bool condition) { test_.check(condition, "quick capture policy"); }
  int count() const { return test_.count(); }

 private:
  SelfTest test_;
};

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index)
    result += text;
  return result;
}

Json reply(const std::string& statusUrl) {
  return {{"captureId", jobId}, {"jobId", jobId}, {"statusUrl", statusUrl}};
}

void checkTexts(PolicyTest& test) {
  test.check(QuickCapturePolicy::validText(repeated("a", 10'000)));
  test.check(!QuickCapturePolicy::validText(repeated("\U0001F642", 5'001)));
}

void checkReplies(PolicyTest& test) {
  const Url& origin = DesktopOrigin::production();
  const std::string path = std::string("/api/jobs/") + jobId;
  test.check(QuickCapturePolicy::confirmed(reply(path), origin));
  test.check(!QuickCapturePolicy::confirmed(reply("https://remote.example" + path), origin));
  Json wrongJob = reply(path);
  wrongJob["jobId"] = "wrong";
  test.check(!QuickCapturePolicy::confirmed(wrongJob, origin));
}

void checkKeys(PolicyTest& test) {
  const auto submits = [](std::uint16_t key, std::uint32_t modifiers, bool composing = false) {
    return QuickCapturePolicy::shouldSubmit(key, modifiers, composing);
  };
  test.check(submits(KeyEvent::returnKey, KeyEvent::command));
  test.check(submits(KeyEvent::keypadEnterKey, KeyEvent::control));
  test.check(!submits(KeyEvent::returnKey, KeyEvent::shift));
  test.check(!submits(KeyEvent::spaceKey, KeyEvent::command));
  test.check(!submits(KeyEvent::returnKey, KeyEvent::command, true));
  test.check(!QuickCapturePolicy::validText(""));
}

}  // namespace

void QuickCapturePolicy::selfTest() {
  PolicyTest test;
  checkTexts(test);
  checkReplies(test);
  checkKeys(test);
  SelfTest::pass("quick capture policy (" + std::to_string(test.count()) + " checks)");
}

}  // namespace navora
