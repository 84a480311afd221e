#include "hosts/linux/installation/FeedSignature.h"

#include <cstddef>
#include <optional>
#include <span>

#include "hosts/linux/installation/AppcastFormat.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view beginning = AppcastFormat::signatureBeginning;
constexpr std::string_view ending = "-->";

// Returns the value of the line "name: value".
std::optional<std::string_view> field(std::string_view lines, std::string_view name) {
  while (!lines.empty()) {
    const auto end = lines.find('\n');
    const std::string_view line = AppcastFormat::bare(lines.substr(0, end));
    lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
    if (line.starts_with(name) && line.substr(name.size()).starts_with(':'))
      return AppcastFormat::bare(line.substr(name.size() + 1));
  }
  return std::nullopt;
}

}  // namespace

FeedSignature checkFeedSignature(std::string_view feed, const Ed25519PublicKey& key) {
  const auto comment = feed.rfind(beginning);
  if (comment == std::string_view::npos) return FeedSignature::missing;
  std::string_view lines = AppcastFormat::bare(feed.substr(comment + beginning.size()));
  if (!lines.ends_with(ending) || lines.find(ending) != lines.size() - ending.size())
    return FeedSignature::invalid;
  lines.remove_suffix(ending.size());

  const auto signatureText = field(lines, "edSignature");
  const auto lengthText = field(lines, "length");
  const auto signature = signatureText ? readSignature(*signatureText) : std::nullopt;
  const auto length = lengthText ? wholeNumber<std::size_t>(*lengthText) : std::nullopt;
  if (!signature || length != comment) return FeedSignature::invalid;
  const auto* bytes = reinterpret_cast<const unsigned char*>(feed.data());
  return isSignedBy(key, std::span(bytes, comment), *signature) ? FeedSignature::valid
                                                                : FeedSignature::invalid;
}

}  // namespace navora
