#include "support/Url.h"

#include <algorithm>
#include <utility>

#include "support/FatalError.h"
#include "support/PercentEncoding.h"
#include "support/Text.h"
#include "support/UrlLayout.h"

namespace navora {

struct Url::Representation {
  Representation(std::string url, std::string_view parsed)
      : text(std::move(url)), layout(UrlLayout::parse(text)), textAsParsed(parsed) {}
  // The layout has views into the text.
  Representation(const Representation&) = delete;
  Representation& operator=(const Representation&) = delete;

  const std::string text;
  const std::optional<UrlLayout> layout;  // always present in a Url
  const std::string textAsParsed;
};

namespace {

using OptionalView = std::optional<std::string_view>;

constexpr std::string_view illegalCharacters = " \"<>\\^`{|}";

bool isIllegal(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte >= 0x7F || illegalCharacters.find(character) != std::string_view::npos;
}

// Encodes illegal characters. `delimiters` are legal elsewhere in a URL but not in this part.
std::string encodedPart(std::string_view part, std::string_view delimiters) {
  std::string result;
  result.reserve(part.size());
  for (std::size_t index = 0; index < part.size(); ++index) {
    const char character = part[index];
    const bool strayPercent = character == '%' && !startsWithPercentTriplet(part.substr(index));
    if (strayPercent || isIllegal(character) ||
        delimiters.find(character) != std::string_view::npos) {
      appendPercentTriplet(result, character);
    } else {
      result.push_back(character);
    }
  }
  return result;
}

std::string encodedHost(std::string_view host) {
  return encodedPart(host, host.starts_with('[') ? "" : "[]");
}

// Returns the square brackets of an IP literal with what they enclose, or an empty part of the
// text. The text need not be legal.
std::string_view ipLiteralIn(std::string_view text) {
  text = text.substr(0, text.find_first_of("?#"));
  const std::size_t slashes = text.find("//");
  const bool hasAuthority = slashes == 0 || (slashes != std::string_view::npos &&
                                             text.find_first_of(":/") + 1 == slashes);
  if (!hasAuthority) return {};
  std::string_view host = text.substr(slashes + 2);
  host = host.substr(0, host.find('/'));
  if (const auto at = host.find('@'); at != std::string_view::npos) host.remove_prefix(at + 1);
  return host.starts_with('[') ? host.substr(0, host.find(']')) : std::string_view();
}

std::string encodedUrl(std::string_view text) {
  const std::size_t fragment = std::min(text.find('#'), text.size());
  std::string_view rest = text.substr(0, fragment);
  std::string result;
  const std::string_view literal = ipLiteralIn(rest);
  if (!literal.empty()) {
    const auto begin = static_cast<std::size_t>(literal.data() - rest.data());
    const std::size_t end = std::min(begin + literal.size() + 1, rest.size());
    result.append(encodedPart(rest.substr(0, begin), "[]"));
    result.append(encodedPart(rest.substr(begin, end - begin), ""));
    rest.remove_prefix(end);
  }
  result.append(encodedPart(rest, "[]"));
  if (fragment != text.size())
    result.append("#").append(encodedPart(text.substr(fragment + 1), "#[]"));
  return result;
}

bool isMissingOrEmpty(OptionalView text) {
  return !text || text->empty();
}

std::optional<std::uint16_t> portNumber(OptionalView digits) {
  return isMissingOrEmpty(digits) ? std::nullopt : wholeNumber<std::uint16_t>(*digits);
}

std::optional<std::string> owned(OptionalView text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

// Removes the brackets of an IPv6 address. An IPvFuture literal keeps them, because nothing else
// distinguishes it from a registered name.
std::string_view withoutBrackets(std::string_view host) {
  const bool isIpv6 = host.size() > 2 && host[0] == '[' && host[1] != 'v' && host[1] != 'V';
  return isIpv6 ? host.substr(1, host.size() - 2) : host;
}

UrlComponents encodedComponents(UrlComponents parts) {
  for (auto* part : {&parts.user, &parts.password, &parts.query}) {
    if (*part) *part = encodedPart(**part, "[]");
  }
  if (parts.host) parts.host = encodedHost(*parts.host);
  if (parts.fragment) parts.fragment = encodedPart(*parts.fragment, "#[]");
  parts.path = encodedPart(parts.path, "[]");
  return parts;
}

std::string assembledAuthority(const UrlComponents& parts) {
  std::string result;
  if (parts.user) {
    result.append(*parts.user);
    if (parts.password) result.append(":").append(*parts.password);
    result.append("@");
  }
  const bool isIpv6 = !parts.host->starts_with('[') && parts.host->find(':') != std::string::npos;
  result.append(isIpv6 ? "[" : "").append(*parts.host).append(isIpv6 ? "]" : "");
  if (parts.port) result.append(":").append(*parts.port);
  return result;
}

std::string assembledUrl(const UrlComponents& parts) {
  std::string result;
  if (parts.scheme) result.append(*parts.scheme).append(":");
  if (parts.host) result.append("//").append(assembledAuthority(parts));
  result.append(parts.path);
  if (parts.query) result.append("?").append(*parts.query);
  if (parts.fragment) result.append("#").append(*parts.fragment);
  return result;
}

}  // namespace

Url::Url(std::shared_ptr<const Representation> representation)
    : representation_(std::move(representation)) {}

std::optional<Url> Url::parse(std::string_view text) {
  if (text.empty() || !isValidUtf8(text)) return std::nullopt;
  auto representation = std::make_shared<const Representation>(encodedUrl(text), text);
  if (!representation->layout) return std::nullopt;
  const OptionalView port = representation->layout->port;
  if (!isMissingOrEmpty(port) && !portNumber(port)) return std::nullopt;
  return Url(std::move(representation));
}

std::optional<Url> Url::fromComponents(const UrlComponents& components) {
  const UrlComponents encoded = encodedComponents(components);
  auto url = parse(assembledUrl(encoded));
  if (!url || url->components() != encoded) return std::nullopt;
  return url;
}

std::optional<std::string> Url::scheme() const {
  return owned(representation_->layout->scheme);
}

std::optional<std::string> Url::user() const {
  const OptionalView information = representation_->layout->userInformation;
  return information ? owned(information->substr(0, information->find(':'))) : std::nullopt;
}

std::optional<std::string> Url::password() const {
  const OptionalView information = representation_->layout->userInformation;
  const std::size_t colon = information ? information->find(':') : std::string_view::npos;
  return colon != std::string_view::npos ? owned(information->substr(colon + 1)) : std::nullopt;
}

std::optional<std::string> Url::host() const {
  const OptionalView host = representation_->layout->host;
  return host ? owned(withoutBrackets(*host)) : std::nullopt;
}

std::optional<std::uint16_t> Url::port() const {
  return portNumber(representation_->layout->port);
}

std::string Url::path() const {
  return std::string(representation_->layout->path);
}

std::optional<std::string> Url::query() const {
  return owned(representation_->layout->query);
}

std::optional<std::string> Url::fragment() const {
  return owned(representation_->layout->fragment);
}

UrlComponents Url::components() const {
  const OptionalView port = representation_->layout->port;
  return {
      scheme(), user(),  password(), host(), isMissingOrEmpty(port) ? std::nullopt : owned(port),
      path(),   query(), fragment()};
}

std::optional<Url> Url::resolve(std::string_view reference) const {
  const auto parsed = parse(reference);
  if (!parsed || !representation_->layout->scheme) return std::nullopt;
  return parse(resolvedReference(*representation_->layout, *parsed->representation_->layout));
}

Url Url::appendingPathComponent(std::string_view component) const {
  UrlComponents parts = components();
  parts.query.reset();
  parts.fragment.reset();
  if (!parts.path.ends_with('/')) parts.path.push_back('/');
  parts.path.append(percentEncodedPathSegment(component));
  const auto url = fromComponents(parts);
  if (!url) fatalError("A path component must be appendable to every URL", "Url", __LINE__);
  return *url;
}

std::string Url::string() const {
  return representation_->text;
}

std::string Url::textAsParsed() const {
  return representation_->textAsParsed;
}

bool operator==(const Url& a, const Url& b) {
  return a.representation_->text == b.representation_->text;
}

}  // namespace navora
