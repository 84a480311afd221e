#include "hosts/macos/system/Conversions.h"

#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "fakes/TestUrl.h"
#include "frameworks/Foundation/Strings.h"

namespace navora {
namespace {

TEST(ConversionsTest, TextsKeepEveryCharacter) {
  const std::string texts[] = {"", "plain", "Größe – ё 漢字", "😀👩‍👩‍👧",
                               std::string("a\0b", 3)};
  for (const std::string& text : texts) {
    EXPECT_EQ(toString(toNSString(text)), text);
  }
  EXPECT_EQ(toNSString("😀").length, 2U);
}

TEST(ConversionsTest, InvalidUtf8IsTheEmptyString) {
  for (const char* text : {"\xff", "\xe2\x82", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80"}) {
    EXPECT_EQ(toNSString(text).length, 0U);
  }
}

TEST(ConversionsTest, UnpairedSurrogatesAreReplaced) {
  const std::pair<std::u16string, std::string> cases[] = {
      {u"\xD83D", "\uFFFD"},
      {u"a\xDE00"
       u"b",
       "a\uFFFDb"},
      {u"\xDE00\xD83D", "\uFFFD\uFFFD"},
      {u"\xD83D\xD83D\xDE00!", "\uFFFD😀!"},
  };
  for (const auto& [units, text] : cases) {
    EXPECT_EQ(toString(doubles::stringOf(units)), text);
  }
}

TEST(ConversionsTest, NilIsTheEmptyText) {
  EXPECT_EQ(toString(nil), "");
}

TEST(ConversionsTest, AddressesPassBothWays) {
  const Url url = testUrl("https://user@navora.example:8443/a%20b/?q=1&r=%C3%BC#part");
  NSURL* address = toNSURL(url);
  EXPECT_EQ(toString(address.absoluteString), url.string());
  EXPECT_EQ(toUrl(address), url);
  EXPECT_EQ(toUrl(nil), std::nullopt);
}

TEST(ConversionsTest, PathsPassBothWays) {
  const std::filesystem::path path = "/private/folder with blanks/Größe 100 %.txt";
  EXPECT_EQ(toString(toFileURL(path).absoluteString),
            "file:///private/folder%20with%20blanks/Gr%C3%B6%C3%9Fe%20100%20%25.txt");
  EXPECT_EQ(toPath(toFileURL(path)), path);
  NSArray<NSURL*>* urls = toFileURLs({path, "/tmp"});
  EXPECT_EQ(urls.count, 2U);
  EXPECT_EQ(toPath(urls[0]), path);
}

TEST(ConversionsTest, ErrorsKeepDomainCodeAndDescription) {
  NSError* error = [NSError errorWithDomain:NSURLErrorDomain
                                       code:NSURLErrorTimedOut
                                   userInfo:@{NSLocalizedDescriptionKey : @"Zu spät"}];
  EXPECT_EQ(toPlatformError(error), (PlatformError{"NSURLErrorDomain", -1001, "Zu spät"}));
}

TEST(ConversionsTest, ALoadThatAPolicyInterruptedCountsAsCancelled) {
  NSError* interrupted = [NSError errorWithDomain:@"WebKitErrorDomain" code:102 userInfo:nil];
  EXPECT_EQ(toPlatformError(interrupted).code, PlatformError::cancelledCode);
  NSError* other = [NSError errorWithDomain:NSURLErrorDomain code:102 userInfo:nil];
  EXPECT_EQ(toPlatformError(other).code, 102);
}

TEST(ConversionsTest, AMissingErrorIsEmpty) {
  EXPECT_EQ(toPlatformError(nil), (PlatformError{"", 0, ""}));
}

}  // namespace
}  // namespace navora
