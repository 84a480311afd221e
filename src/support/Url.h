#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The parts of a URL, percent-encoded and without delimiters. A missing part (nullopt) differs from
// an empty one: "https://h/?" has an empty query.
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
  // There are no move operations, so that a moved-from Url is an intact copy.
  Url(const Url&) = default;
  Url& operator=(const Url&) = default;

  // Parses a URL. Illegal characters are percent-encoded: white space and control characters,
  // non-ASCII characters, " < > \ ^ ` { | }, square brackets outside an IP-literal host, a second
  // "#", and a "%" without two hexadecimal digits (as "%25"). Nothing else is changed, not even the
  // case of letters. Returns nullopt for the empty text, for invalid UTF-8, for a port above 65535,
  // and for anything else that the grammar forbids. An empty port ("https://h:/") means no port.
  static std::optional<Url> parse(std::string_view text);

  // Builds a URL from parts, encoding illegal characters as parse() does. Returns nullopt if
  // parsing the result would not yield the same parts, for example for a path that contains "?", a
  // port without a host, or an empty port.
  static std::optional<Url> fromComponents(const UrlComponents& components);

  std::optional<std::string> scheme() const;
  // The user is present if the authority contains "@", the password if the user is followed by ":".
  std::optional<std::string> user() const;
  std::optional<std::string> password() const;
  // Without the brackets of an IPv6 address.
  std::optional<std::string> host() const;
  std::optional<std::uint16_t> port() const;
  std::string path() const;
  std::optional<std::string> query() const;
  std::optional<std::string> fragment() const;
  UrlComponents components() const;

  // Resolves a reference against this URL (RFC 3986, section 5). Returns an absolute URL without
  // dot segments, or nullopt if this URL has no scheme or the reference does not parse (the empty
  // one does not).
  std::optional<Url> resolve(std::string_view reference) const;

  // Returns this URL without query and fragment and with one more path segment. `component` is
  // plain text: "/", "?" and "%" in it are encoded.
  Url appendingPathComponent(std::string_view component) const;

  // Returns the whole URL as text.
  std::string string() const;

  // Returns the text that was parsed, in which illegal characters are as they were. Other programs
  // get a page's link in this form: encoding can change what it means to them, as it does with a
  // second "#".
  std::string textAsParsed() const;

  // Compares texts: "http://h" and "http://h/" are different.
  friend bool operator==(const Url& a, const Url& b);

 private:
  struct Representation;
  explicit Url(std::shared_ptr<const Representation> representation);

  std::shared_ptr<const Representation> representation_;  // never null
};

}  // namespace navora
