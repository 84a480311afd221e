#include <string>

#include <gtest/gtest.h>

#include "capture/CaptureDraft.h"
#include "support/Json.h"

namespace navora {
namespace {

constexpr const char* someUuid = "00000000-0000-4000-8000-ABCDEF000001";

CaptureDraft unconfirmedDraft() {
  const std::string raw = "Ünïcödé \"quoted\"\n\tand 🙂";
  return {" " + raw + "\n",
          CaptureAttempt{raw, std::string("mac-") + someUuid, "user-1",
                         Json{{"raw", raw}, {"provider", "openai"}}.dump(), someUuid},
          true};
}

Json json(const CaptureDraft& draft) {
  return Json::parse(draft.serialized());
}

void expectDamaged(const Json& content) {
  EXPECT_EQ(CaptureDraft::parse(content.dump()), std::nullopt) << content;
}

TEST(CaptureDraft, ReadsWhatItHasWritten) {
  const CaptureAttempt attempt = *unconfirmedDraft().attempt;
  for (const CaptureDraft& draft :
       {unconfirmedDraft(), CaptureDraft{"just text", std::nullopt, false},
        CaptureDraft{std::string(40'000, 'x'), std::nullopt, false},
        CaptureDraft{std::string("a\0b\r\n\xE2\x80\xA8", 8), std::nullopt, false},
        CaptureDraft{"edited after a refusal", attempt, false}, CaptureDraft{}}) {
    EXPECT_EQ(CaptureDraft::parse(draft.serialized()), draft) << draft.text;
  }
}

TEST(CaptureDraft, IsEmptyWithoutTextAndAttempt) {
  EXPECT_TRUE(CaptureDraft().isEmpty());
  EXPECT_FALSE((CaptureDraft{" ", std::nullopt, false}).isEmpty());
  EXPECT_FALSE((CaptureDraft{"", unconfirmedDraft().attempt, false}).isEmpty());
}

TEST(CaptureDraft, RejectsEveryTruncation) {
  const std::string whole = unconfirmedDraft().serialized();
  for (std::size_t size = 0; size < whole.size(); ++size)
    ASSERT_EQ(CaptureDraft::parse(whole.substr(0, size)), std::nullopt) << size;
}

TEST(CaptureDraft, RejectsWhatIsNoDraft) {
  for (const char* content :
       {"", "null", "[]", "{}", "text", "\xFF", R"({"version": 1})",
        R"({"version": 2, "text": "later", "unconfirmed": false})",
        R"({"version": 1, "text": 5, "unconfirmed": false})",
        R"({"version": 1, "text": "a", "unconfirmed": "no"})",
        R"({"version": 1, "text": "a", "unconfirmed": false, "attempt": null})"}) {
    EXPECT_EQ(CaptureDraft::parse(content), std::nullopt) << content;
  }
}

TEST(CaptureDraft, RejectsAnAttemptThatIsIncompleteOrInvalid) {
  for (const char* key : {"raw", "key", "account", "body", "flowId"}) {
    Json missing = json(unconfirmedDraft());
    missing["attempt"].erase(key);
    expectDamaged(missing);
    for (const Json& value : {Json(5), Json(nullptr), Json("")}) {
      Json wrong = json(unconfirmedDraft());
      wrong["attempt"][key] = value;
      expectDamaged(wrong);
    }
  }
}

// Both become headers of a request.
TEST(CaptureDraft, RejectsAKeyOrFlowThatCouldForgeAHeader) {
  for (const char* key : {"key", "flowId"}) {
    Json forged = json(unconfirmedDraft());
    forged["attempt"][key] = forged["attempt"][key].get<std::string>() + "\r\nX-Other: 1";
    expectDamaged(forged);
  }
}

TEST(CaptureDraft, RejectsABodyOfAnotherText) {
  Json other = json(unconfirmedDraft());
  other["attempt"]["body"] = R"({"raw":"another"})";
  expectDamaged(other);
}

TEST(CaptureDraft, RejectsAnUnconfirmedNoteThatIsNotTheText) {
  Json other = json(unconfirmedDraft());
  other["text"] = "another";
  expectDamaged(other);
  Json missing = json(unconfirmedDraft());
  missing.erase("attempt");
  expectDamaged(missing);
}

}  // namespace
}  // namespace navora
