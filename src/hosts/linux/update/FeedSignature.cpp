#include "hosts/linux/update/FeedSignature.h"

#include <charconv>
#include <cstddef>
#include <optional>
#include <span>

namespace navora {
namespace {

constexpr std::string_view beginning = "<!-- sparkle-signatures:";
constexpr std::string_view ending = "-->";
constexpr std::string_view whiteSpace = " \t\r\n";

std::string_view withoutTrailingSpace(std::string_view text) {
  const auto last = text.find_last_not_of(whiteSpace);
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

// The value of a line "name: value".
std::optional<std::string_view> field(std::string_view lines, std::string_view name) {
  while (!lines.empty()) {
    const auto end = lines.find('\n');
    std::string_view line = lines.substr(0, end);
    lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
    const auto begin = line.find_first_not_of(whiteSpace);
    if (begin == std::string_view::npos) continue;
    line.remove_prefix(begin);
    if (!line.starts_with(name) || !line.substr(name.size()).starts_with(':')) continue;
    line.remove_prefix(name.size() + 1);
    const auto value = line.find_first_not_of(whiteSpace);
    if (value == std::string_view::npos) return std::nullopt;
    return withoutTrailingSpace(line.substr(value));
  }
  return std::nullopt;
}

std::optional<std::size_t> readLength(std::string_view text) {
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return length;
}

}  // namespace

FeedSignature checkFeedSignature(std::string_view feed, const Ed25519PublicKey& key) {
  const auto comment = feed.rfind(beginning);
  if (comment == std::string_view::npos) return FeedSignature::missing;
  std::string_view lines = withoutTrailingSpace(feed.substr(comment + beginning.size()));
  if (!lines.ends_with(ending) || lines.find(ending) != lines.size() - ending.size())
    return FeedSignature::invalid;
  lines.remove_suffix(ending.size());

  const auto signatureText = field(lines, "edSignature");
  const auto lengthText = field(lines, "length");
  const auto signature = signatureText ? readSignature(*signatureText) : std::nullopt;
  const auto length = lengthText ? readLength(*lengthText) : std::nullopt;
  if (!signature || length != comment) return FeedSignature::invalid;
  const auto* bytes = reinterpret_cast<const unsigned char*>(feed.data());
  return isSignedBy(key, std::span(bytes, comment), *signature) ? FeedSignature::valid
                                                                : FeedSignature::invalid;
}

}  // namespace navora
