#include <gtest/gtest.h>

#include "support/Url.h"

namespace navora {
namespace {

std::string resolved(std::string_view base, std::string_view reference) {
  const auto url = Url::parse(base);
  const auto result = url ? url->resolve(reference) : std::nullopt;
  return result ? result->string() : "(refused)";
}

struct Example {
  const char* reference;
  const char* result;
};

// The examples of RFC 3986, sections 5.4.1 and 5.4.2, except the empty reference.
constexpr Example standardExamples[] = {
    {"g:h", "g:h"},
    {"g", "http://a/b/c/g"},
    {"./g", "http://a/b/c/g"},
    {"g/", "http://a/b/c/g/"},
    {"/g", "http://a/g"},
    {"//g", "http://g"},
    {"?y", "http://a/b/c/d;p?y"},
    {"g?y", "http://a/b/c/g?y"},
    {"#s", "http://a/b/c/d;p?q#s"},
    {"g#s", "http://a/b/c/g#s"},
    {"g?y#s", "http://a/b/c/g?y#s"},
    {";x", "http://a/b/c/;x"},
    {"g;x", "http://a/b/c/g;x"},
    {"g;x?y#s", "http://a/b/c/g;x?y#s"},
    {".", "http://a/b/c/"},
    {"./", "http://a/b/c/"},
    {"..", "http://a/b/"},
    {"../", "http://a/b/"},
    {"../g", "http://a/b/g"},
    {"../..", "http://a/"},
    {"../../", "http://a/"},
    {"../../g", "http://a/g"},
    {"../../../g", "http://a/g"},
    {"../../../../g", "http://a/g"},
    {"/./g", "http://a/g"},
    {"/../g", "http://a/g"},
    {"g.", "http://a/b/c/g."},
    {".g", "http://a/b/c/.g"},
    {"g..", "http://a/b/c/g.."},
    {"..g", "http://a/b/c/..g"},
    {"./../g", "http://a/b/g"},
    {"./g/.", "http://a/b/c/g/"},
    {"g/./h", "http://a/b/c/g/h"},
    {"g/../h", "http://a/b/c/h"},
    {"g;x=1/./y", "http://a/b/c/g;x=1/y"},
    {"g;x=1/../y", "http://a/b/c/y"},
    {"g?y/./x", "http://a/b/c/g?y/./x"},
    {"g?y/../x", "http://a/b/c/g?y/../x"},
    {"g#s/./x", "http://a/b/c/g#s/./x"},
    {"g#s/../x", "http://a/b/c/g#s/../x"},
    {"http:g", "http:g"},
};

TEST(UrlResolve, MatchesTheExamplesOfRfc3986) {
  for (const Example& example : standardExamples) {
    EXPECT_EQ(resolved("http://a/b/c/d;p?q", example.reference), example.result)
        << example.reference;
  }
}

TEST(UrlResolve, KeepsPortAndCredentialsOfTheBase) {
  EXPECT_EQ(resolved("https://u:p@h:443/a", "/b"), "https://u:p@h:443/b");
  EXPECT_EQ(resolved("http://[::1]:8080/", "api/jobs/1"), "http://[::1]:8080/api/jobs/1");
}

TEST(UrlResolve, InsertsTheRootIfTheBaseHasNoPath) {
  EXPECT_EQ(resolved("https://navora.example", "login"), "https://navora.example/login");
  EXPECT_EQ(resolved("https://navora.example", "/#today"), "https://navora.example/#today");
  EXPECT_EQ(resolved("https://navora.example", ".."), "https://navora.example/");
}

TEST(UrlResolve, DropsTheFragmentOfTheBase) {
  EXPECT_EQ(resolved("https://h/a#b", "?c"), "https://h/a?c");
  EXPECT_EQ(resolved("https://h/a?b#c", "#d"), "https://h/a?b#d");
}

TEST(UrlResolve, ReturnsAnAbsoluteReferenceItself) {
  EXPECT_EQ(resolved("https://h/a", "HTTP://other:1/x/../y"), "HTTP://other:1/y");
  EXPECT_EQ(resolved("https://h/a", "//other/x"), "https://other/x");
  EXPECT_EQ(resolved("https://h/a", "javascript:alert(1)"), "javascript:alert(1)");
}

TEST(UrlResolve, NeverTurnsAPathIntoAnAuthority) {
  EXPECT_EQ(resolved("x:/a", "/.//evil.example"), "x:/.//evil.example");
  EXPECT_EQ(resolved("https://h/a", "/.//evil.example"), "https://h//evil.example");
  EXPECT_EQ(resolved("https://h/a", "\\\\evil.example"), "https://h/%5C%5Cevil.example");
  EXPECT_EQ(resolved("https://h/a", "/\\evil.example"), "https://h/%5Cevil.example");
}

TEST(UrlResolve, EncodesIllegalCharactersOfTheReference) {
  EXPECT_EQ(resolved("https://h", "/a b#\xC3\xA9"), "https://h/a%20b#%C3%A9");
}

TEST(UrlResolve, RejectsARelativeBaseAndAReferenceThatDoesNotParse) {
  EXPECT_EQ(resolved("/a", "b"), "(refused)");
  EXPECT_EQ(resolved("//h/a", "b"), "(refused)");
  EXPECT_EQ(resolved("https://h/", ""), "(refused)");
  EXPECT_EQ(resolved("https://h/", "//h:99999/"), "(refused)");
  EXPECT_EQ(resolved("https://h/", "1:b"), "(refused)");
  EXPECT_EQ(resolved("https://h/", "\xFF"), "(refused)");
}

TEST(UrlResolve, StaysLinearForManyDotSegments) {
  std::string reference;
  for (int index = 0; index < 200'000; ++index)
    reference.append("a/../");
  EXPECT_EQ(resolved("https://h/", reference), "https://h/");
}

}  // namespace
}  // namespace navora
