#include "capture/QuickCapturePolicy.h"

#include <algorithm>
#include <utility>

#include "origin/DesktopOrigin.h"
#include "platform/KeyEvent.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view jobPathPrefix = "/api/jobs/";

// Resolves a path against the origin. An absolute URL stays as it is: dot segments in it must not
// be removed, because its path is compared as text.
std::optional<Url> absoluteUrl(const std::string& reference, const Url& origin) {
  auto url = Url::parse(reference);
  return url && url->scheme() ? std::move(url) : origin.resolve(reference);
}

bool isStatusUrlOf(const Url& url, std::string_view jobId, const Url& origin) {
  if (!DesktopOrigin::contains(url, origin)) return false;
  if (url.query() || url.fragment()) return false;
  return url.path() == std::string(jobPathPrefix) + std::string(jobId);
}

}  // namespace

bool QuickCapturePolicy::shouldSubmit(std::uint16_t keyCode, std::uint32_t modifiers,
                                      bool composing) {
  if (composing) return false;
  if (keyCode != KeyEvent::returnKey && keyCode != KeyEvent::keypadEnterKey) return false;
  return (modifiers & (KeyEvent::command | KeyEvent::control)) != 0;
}

bool QuickCapturePolicy::validText(std::string_view text) {
  return !text.empty() && utf16Length(text) <= maximumTextLength;
}

bool QuickCapturePolicy::confirmed(const Json& reply, const Url& origin) {
  return readReceipt(reply, origin).has_value();
}

std::optional<QuickCapturePolicy::Receipt> QuickCapturePolicy::readReceipt(const Json& reply,
                                                                           const Url& origin) {
  auto captureId = stringMember(reply, "captureId");
  auto jobId = stringMember(reply, "jobId");
  const auto statusUrl = stringMember(reply, "statusUrl");
  if (!captureId || !isUuid(*captureId)) return std::nullopt;
  if (!jobId || !isUuid(*jobId)) return std::nullopt;
  if (!statusUrl) return std::nullopt;
  const auto url = absoluteUrl(*statusUrl, origin);
  if (!url || !isStatusUrlOf(*url, *jobId, origin)) return std::nullopt;
  return Receipt{*std::move(captureId), *std::move(jobId)};
}

std::size_t reportedLength(std::string_view text) {
  return std::min(utf16Length(text), QuickCapturePolicy::maximumTextLength);
}

}  // namespace navora
