#include "capture/CaptureDraft.h"

#include <utility>

#include "support/Json.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr int formatVersion = 1;
constexpr std::string_view keyPrefix = "mac-";

Json jsonFrom(const CaptureAttempt& attempt) {
  return {{"raw", attempt.raw},
          {"key", attempt.key},
          {"account", attempt.account},
          {"body", attempt.body},
          {"flowId", attempt.flowId}};
}

// The key and the flow id become HTTP headers, and the body is sent unchanged, so each must have
// the form that CaptureSubmission gives it.
bool isValid(const CaptureAttempt& attempt) {
  if (!attempt.key.starts_with(keyPrefix) || !isUuid(attempt.key.substr(keyPrefix.size())))
    return false;
  if (!isUuid(attempt.flowId) || attempt.account.empty()) return false;
  const auto body = parseJson(attempt.body);
  return body && body->is_object() && stringMember(*body, "raw") == attempt.raw;
}

std::optional<CaptureAttempt> readAttempt(const Json& json) {
  auto raw = stringMember(json, "raw");
  auto key = stringMember(json, "key");
  auto account = stringMember(json, "account");
  auto body = stringMember(json, "body");
  auto flowId = stringMember(json, "flowId");
  if (!raw || !key || !account || !body || !flowId) return std::nullopt;
  CaptureAttempt attempt{*std::move(raw), *std::move(key), *std::move(account), *std::move(body),
                         *std::move(flowId)};
  if (!isValid(attempt)) return std::nullopt;
  return attempt;
}

}  // namespace

std::string CaptureDraft::serialized() const {
  Json json{{"version", formatVersion}, {"text", text}, {"unconfirmed", unconfirmed}};
  if (attempt) json["attempt"] = jsonFrom(*attempt);
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<CaptureDraft> CaptureDraft::parse(std::string_view content) {
  const auto json = parseJson(content);
  if (!json || !json->is_object() || json->value("version", Json()) != formatVersion)
    return std::nullopt;
  auto text = stringMember(*json, "text");
  const auto unconfirmed = json->find("unconfirmed");
  if (!text || unconfirmed == json->end() || !unconfirmed->is_boolean()) return std::nullopt;
  CaptureDraft draft{*std::move(text), std::nullopt, unconfirmed->get<bool>()};
  if (const auto attempt = json->find("attempt"); attempt != json->end()) {
    draft.attempt = readAttempt(*attempt);
    if (!draft.attempt) return std::nullopt;
  }
  const bool isAttempted = draft.attempt && draft.attempt->raw == trimmed(draft.text);
  if (draft.unconfirmed && !isAttempted) return std::nullopt;
  return draft;
}

}  // namespace navora
