#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The parts of a URL, each as it is written in one (percent-encoded), without its delimiters. An
// absent part and an empty one are different: "https://h/?" has the empty query.
struct UrlComponents {
  std::optional<std::string> scheme;
  std::optional<std::string> user;
  std::optional<std::string> password;
  std::optional<std::string> host;  // without the brackets of an IPv6 address
  std::optional<std::string> port;  // decimal digits
  std::string path;
  std::optional<std::string> query;
  std::optional<std::string> fragment;

  bool operator==(const UrlComponents&) const = default;
};

// A URL or relative reference of RFC 3986. Immutable; copies share one text.
class Url {
 public:
  // No move operations: a Url that was moved from is a copy, never a broken value.
  Url(const Url&) = default;
  Url& operator=(const Url&) = default;

  // Reads a URL. Characters that no URL may hold are percent-encoded: white space and control
  // characters, everything outside of ASCII, " < > \ ^ ` { | }, square brackets outside of an
  // IP-literal host, a second "#", and a "%" without two hexadecimal digits (as "%25"). Nothing
  // else is changed, no letter's case either. Absent for the empty text, for invalid UTF-8, for a
  // port above 65535, and for whatever the grammar still refuses. An empty port ("https://h:/")
  // reads as no port.
  static std::optional<Url> parse(std::string_view text);

  // Builds a URL from parts, encoding illegal characters as parse does. Absent when the result
  // would not read back as the same parts, for example a path with a "?" in it, a port without a
  // host, or an empty port.
  static std::optional<Url> fromComponents(const UrlComponents& components);

  std::optional<std::string> scheme() const;
  // The user name is present whenever the authority has an "@"; the password when a ":" follows it.
  std::optional<std::string> user() const;
  std::optional<std::string> password() const;
  // Without the brackets of an IPv6 address.
  std::optional<std::string> host() const;
  std::optional<std::uint16_t> port() const;
  std::string path() const;
  std::optional<std::string> query() const;
  std::optional<std::string> fragment() const;
  UrlComponents components() const;

  // The reference resolved against this URL (RFC 3986 section 5): an absolute URL without dot
  // segments. Absent when this URL has no scheme or the reference does not parse; the empty
  // reference does not parse.
  std::optional<Url> resolve(std::string_view reference) const;

  // This URL without query and fragment, with one more path segment after exactly one slash. The
  // component is plain text: a slash, a question mark or a percent sign in it is encoded.
  Url appendingPathComponent(std::string_view component) const;

  // The whole URL as text.
  std::string string() const;

  // Compares the texts: "http://h" and "http://h/" differ.
  friend bool operator==(const Url& a, const Url& b);

 private:
  struct Representation;
  explicit Url(std::shared_ptr<const Representation> representation);

  // Never null.
  std::shared_ptr<const Representation> representation_;
};

}  // namespace navora
