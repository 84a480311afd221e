#include <functional>

#include <gtest/gtest.h>

#include "fakes/TestUrl.h"
#include "origin/SessionCookies.h"

namespace navora {
namespace {

const Date now = dateFromSecondsSince1970(1'700'000'000);

HttpCookie session() {
  return {"tolvin_session", "abc", "navora.example", "/", true, std::nullopt};
}

std::optional<std::string> header(const std::vector<HttpCookie>& cookies,
                                  const char* origin = "https://navora.example/",
                                  CookieDomainDots dots = CookieDomainDots::allAround) {
  return sessionCookieHeader(cookies, testUrl(origin), now, dots);
}

std::optional<std::string> headerWith(const std::function<void(HttpCookie&)>& change,
                                      const char* origin = "https://navora.example/") {
  HttpCookie cookie = session();
  change(cookie);
  return header({cookie}, origin);
}

TEST(SessionCookies, UsesOnlyTheSessionCookie) {
  HttpCookie other = session();
  other.name = "other";
  HttpCookie upperCase = session();
  upperCase.name = "Tolvin_Session";
  EXPECT_EQ(header({other, session(), upperCase}), "tolvin_session=abc");
  EXPECT_EQ(header({other, upperCase}), std::nullopt);
  EXPECT_EQ(header({}), std::nullopt);
}

TEST(SessionCookies, ComparesTheSchemeWithoutCase) {
  EXPECT_EQ(header({session()}, "HTTPS://navora.example/"), "tolvin_session=abc");
}

TEST(SessionCookies, UsesEveryValidSessionCookie) {
  HttpCookie second = session();
  second.value = "def";
  EXPECT_EQ(header({session(), second}), "tolvin_session=abc; tolvin_session=def");
}

TEST(SessionCookies, RequiresExactlyTheOriginsHost) {
  for (const char* domain :
       {"navora.example", ".navora.example", "NAVORA.Example", "..navora.example."})
    EXPECT_TRUE(headerWith([&](HttpCookie& cookie) { cookie.domain = domain; })) << domain;
  for (const char* domain :
       {"example", ".example", "www.navora.example", "navora.example.com", "", "."})
    EXPECT_FALSE(headerWith([&](HttpCookie& cookie) { cookie.domain = domain; })) << domain;
}

TEST(SessionCookies, CanIgnoreOneLeadingDotOnly) {
  const auto taken = [](const char* domain) {
    HttpCookie cookie = session();
    cookie.domain = domain;
    return header({cookie}, "https://navora.example/", CookieDomainDots::oneLeading).has_value();
  };
  for (const char* domain : {"navora.example", ".navora.example", ".NAVORA.Example"})
    EXPECT_TRUE(taken(domain)) << domain;
  for (const char* domain : {"..navora.example", "navora.example.", "example", ""})
    EXPECT_FALSE(taken(domain)) << domain;
}

TEST(SessionCookies, RequiresTheRootPath) {
  for (const char* path : {"", "/api", "//", "/x/.."})
    EXPECT_FALSE(headerWith([&](HttpCookie& cookie) { cookie.path = path; })) << path;
}

TEST(SessionCookies, UsesSecureCookiesForHttpsOnly) {
  const auto onLoopback = [](bool secure) {
    return headerWith(
        [&](HttpCookie& cookie) {
          cookie.domain = "127.0.0.1";
          cookie.isSecure = secure;
        },
        "http://127.0.0.1:8878/");
  };
  EXPECT_FALSE(onLoopback(true));
  EXPECT_TRUE(onLoopback(false));
}

TEST(SessionCookies, IgnoresExpiredCookies) {
  const auto expiringIn = [](double seconds) {
    return headerWith(
        [&](HttpCookie& cookie) { cookie.expires = now + std::chrono::duration<double>(seconds); });
  };
  EXPECT_TRUE(expiringIn(0.1));
  EXPECT_FALSE(expiringIn(0));
  EXPECT_FALSE(expiringIn(-1));
}

}  // namespace
}  // namespace navora
