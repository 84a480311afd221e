#include <gmock/gmock.h>

#include "hosts/linux/installation/Ed25519.h"
#include "linux/installation/SampleVersion.h"
#include "make-update/SigningKey.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

std::span<const unsigned char> bytesOf(const std::string& text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

TEST(SigningKeyTest, SignaturesAreVerifiedByThePublicKey) {
  const auto key = SigningKey::make();
  const std::string content = "content";
  const auto signature = readSignature(key.sign(bytesOf(content)));
  ASSERT_TRUE(signature);
  EXPECT_TRUE(isSignedBy(publicKeyOf(key), bytesOf(content), *signature));
  EXPECT_FALSE(isSignedBy(publicKeyOf(key), bytesOf("Content"), *signature));
  EXPECT_FALSE(isSignedBy(publicKeyOf(SigningKey::make()), bytesOf(content), *signature));
}

// RFC 8032, section 7.1, test 1.
TEST(SigningKeyTest, SignsTheTestVectorOfTheStandard) {
  const auto key = SigningKey::fromText("nWGxne/9WmC6hEr0kuwsxERJxWl7MmkZcDusAxyuf2A=");
  ASSERT_TRUE(key);
  EXPECT_EQ(key->publicText(), "11qYAYKxCrfVS/7TyWQHOg7hcvPapiMlrwIaaPcHURo=");
  EXPECT_EQ(key->sign({}),
            "5VZDAMNgrHKQhuLMgG6CioSHfx645dl02HPgZSJJAVVfuIIVkKM7rMYeOXAc+bRr0lv18F"
            "lbviRlUUFDjnoQCw==");
}

TEST(SigningKeyTest, IsReadFromItsText) {
  const auto key = SigningKey::make();
  const auto again = SigningKey::fromText(key.secretText() + "\n");
  ASSERT_TRUE(again);
  EXPECT_EQ(again->publicText(), key.publicText());
  EXPECT_EQ(again->secretText(), key.secretText());
  EXPECT_NE(SigningKey::make().secretText(), key.secretText());
}

TEST(SigningKeyTest, OtherTextsAreRefused) {
  const std::string text = SigningKey::make().secretText();
  for (const std::string& wrong : {std::string(), text.substr(4), text + "AAAA", text + text,
                                   text + "#", "-----BEGIN KEY-----\n" + text}) {
    EXPECT_FALSE(SigningKey::fromText(wrong)) << wrong;
  }
}

TEST(SigningKeyTest, SignsTheContentOfAFile) {
  const TemporaryDirectory folder;
  const auto key = SigningKey::make();
  const std::string content = std::string(100'000, 'a') + std::string("\0\n\r\xFF", 4);
  writeFile(folder.path() / "file", content);
  EXPECT_EQ(key.signFile(folder.path() / "file"), key.sign(bytesOf(content)));
  EXPECT_EQ(key.signFile(folder.path() / "none"), std::nullopt);
  EXPECT_EQ(key.signFile(folder.path()), std::nullopt);
  writeFile(folder.path() / "key", key.secretText() + "\n");
  EXPECT_EQ(SigningKey::fromFile(folder.path() / "key").value_or(SigningKey::make()).publicText(),
            key.publicText());
  EXPECT_FALSE(SigningKey::fromFile(folder.path() / "none"));
}

}  // namespace
}  // namespace navora
