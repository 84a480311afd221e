#include <locale>
#include <string>

#include <gtest/gtest.h>

#include "support/Date.h"

namespace navora {
namespace {

TEST(DateIso8601, WritesWholeSecondsInUtc) {
  EXPECT_EQ(iso8601(dateFromSecondsSince1970(0)), "1970-01-01T00:00:00Z");
  EXPECT_EQ(iso8601(dateFromSecondsSince1970(1'763'698'452.999)), "2025-11-21T04:14:12Z");
  EXPECT_EQ(iso8601(dateFromSecondsSince1970(-0.5)), "1969-12-31T23:59:59Z");
}

TEST(DateIso8601, DoesNotDependOnTheLocale) {
  class Grouped : public std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale(), new Grouped));
  const std::string text = iso8601(dateFromSecondsSince1970(1'763'698'452));
  std::locale::global(before);
  EXPECT_EQ(text, "2025-11-21T04:14:12Z");
}

}  // namespace
}  // namespace navora
