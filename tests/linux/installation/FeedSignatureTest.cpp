#include <string>

#include <gmock/gmock.h>

#include "hosts/linux/installation/FeedSignature.h"
#include "linux/installation/SampleVersion.h"

namespace navora {
namespace {

class FeedSignatureTest : public testing::Test {
 protected:
  std::string signatureFor(const std::string& content) const {
    return key_.sign({reinterpret_cast<const unsigned char*>(content.data()), content.size()});
  }
  static std::string comment(const std::string& signature, std::size_t length) {
    return "<!-- sparkle-signatures:\nedSignature: " + signature +
           "\nlength: " + std::to_string(length) + "\n-->\n";
  }
  std::string withSignature(const std::string& content) const {
    return content + comment(signatureFor(content), content.size());
  }
  FeedSignature check(std::string_view feed) const {
    return checkFeedSignature(feed, publicKeyOf(key_));
  }

  const SigningKey key_ = SigningKey::make();
  const std::string content_ = "<rss><channel><item/></channel></rss>\n";
};

TEST_F(FeedSignatureTest, SignedContentIsValid) {
  EXPECT_EQ(check(withSignature(content_)), FeedSignature::valid);
}

TEST_F(FeedSignatureTest, TheOrderOfTheFieldsAndSpaceAreIgnored) {
  EXPECT_EQ(
      check(content_ + "<!-- sparkle-signatures:\r\n  length: " + std::to_string(content_.size()) +
            "\r\n\tedSignature:   " + signatureFor(content_) + " \r\n-->\r\n\r\n"),
      FeedSignature::valid);
}

TEST_F(FeedSignatureTest, AFeedWithoutTheCommentHasNoSignature) {
  EXPECT_EQ(check(content_), FeedSignature::missing);
  EXPECT_EQ(check(""), FeedSignature::missing);
  EXPECT_EQ(check(content_ + "<!-- another comment -->"), FeedSignature::missing);
}

TEST_F(FeedSignatureTest, AChangedByteIsInvalidAnywhere) {
  const std::string feed = withSignature(content_);
  for (std::size_t place = 0; place < content_.size(); ++place) {
    std::string changed = feed;
    changed[place] = static_cast<char>(changed[place] ^ 1);
    EXPECT_EQ(check(changed), FeedSignature::invalid) << place;
  }
}

TEST_F(FeedSignatureTest, LongerOrShorterContentIsInvalid) {
  const std::string signature = signatureFor(content_);
  EXPECT_EQ(check(" " + withSignature(content_)), FeedSignature::invalid);
  EXPECT_EQ(check(content_ + " " + comment(signature, content_.size())), FeedSignature::invalid);
  EXPECT_EQ(check(content_ + " " + comment(signature, content_.size() + 1)),
            FeedSignature::invalid);
  EXPECT_EQ(check(content_.substr(1) + comment(signature, content_.size() - 1)),
            FeedSignature::invalid);
}

TEST_F(FeedSignatureTest, AnotherKeyIsInvalid) {
  EXPECT_EQ(checkFeedSignature(withSignature(content_), publicKeyOf(SigningKey::make())),
            FeedSignature::invalid);
}

TEST_F(FeedSignatureTest, AnyOtherLengthIsInvalid) {
  const std::string signature = signatureFor(content_);
  for (const char* length :
       {"0", "36", "-1", "38x", "", "99999999999999999999999", "0x26", "+38"}) {
    EXPECT_EQ(check(content_ + "<!-- sparkle-signatures:\nedSignature: " + signature +
                    "\nlength: " + length + "\n-->"),
              FeedSignature::invalid)
        << length;
  }
}

TEST_F(FeedSignatureTest, AMissingOrMalformedFieldIsInvalid) {
  const std::string length = std::to_string(content_.size());
  const std::string signature = signatureFor(content_);
  const std::string begin = content_ + "<!-- sparkle-signatures:\n";
  EXPECT_EQ(check(begin + "length: " + length + "\n-->"), FeedSignature::invalid);
  EXPECT_EQ(check(begin + "edSignature: " + signature + "\n-->"), FeedSignature::invalid);
  EXPECT_EQ(check(begin + "-->"), FeedSignature::invalid);
  EXPECT_EQ(check(begin), FeedSignature::invalid);
  EXPECT_EQ(check(content_ + comment(signature.substr(4), content_.size())),
            FeedSignature::invalid);
  EXPECT_EQ(check(content_ + comment("AAAA" + signature, content_.size())), FeedSignature::invalid);
  EXPECT_EQ(check(content_ + comment("?" + signature.substr(1), content_.size())),
            FeedSignature::invalid);
}

TEST_F(FeedSignatureTest, TextAfterTheCommentIsInvalid) {
  const std::string feed = withSignature(content_);
  EXPECT_EQ(check(feed + "<item/>"), FeedSignature::invalid);
  EXPECT_EQ(check(feed + "<!-- x -->"), FeedSignature::invalid);
  // Where an XML parser sees the end of the comment, and text after it.
  const auto end = feed.rfind("-->");
  EXPECT_EQ(check(feed.substr(0, end) + "--><rss/><!--" + feed.substr(end)),
            FeedSignature::invalid);
}

TEST_F(FeedSignatureTest, ACommentInTheMiddleSignsNothing) {
  EXPECT_EQ(check("<rss>" + comment(signatureFor("<rss>"), 5) + "</rss>"), FeedSignature::invalid);
}

TEST_F(FeedSignatureTest, OnlyTheLastOfTwoCommentsSigns) {
  const std::string feed = withSignature(content_);
  EXPECT_EQ(check(feed + comment(signatureFor(content_), content_.size())), FeedSignature::invalid);
  EXPECT_EQ(check(withSignature(feed)), FeedSignature::valid);
}

TEST_F(FeedSignatureTest, AnEmptyContentCanBeSigned) {
  EXPECT_EQ(check(withSignature("")), FeedSignature::valid);
}

}  // namespace
}  // namespace navora
