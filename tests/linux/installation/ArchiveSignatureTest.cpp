#include <gmock/gmock.h>

#include "hosts/linux/installation/ArchiveSignature.h"
#include "linux/installation/SampleVersion.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class ArchiveSignatureTest : public testing::Test {
 protected:
  ArchiveSignatureTest() { writeFile(file_, content_); }

  std::string reason() const { return reason(file_, content_.size(), key_); }
  std::string reason(const std::filesystem::path& file, std::uint64_t length,
                     const SigningKey& key) const {
    const auto error = verifyArchive(file, length, signature(), publicKeyOf(key));
    return error ? error->localizedDescription : "valid";
  }
  Ed25519Signature signature() const {
    const auto text =
        key_.sign({reinterpret_cast<const unsigned char*>(content_.data()), content_.size()});
    return readSignature(text).value_or(Ed25519Signature{});
  }

  const TemporaryDirectory folder_;
  const std::filesystem::path file_ = folder_.path() / "archive";
  const std::string content_ = std::string(200'000, 'a') + "end";
  const SigningKey key_ = SigningKey::make();
};

TEST_F(ArchiveSignatureTest, SignedContentIsValid) {
  EXPECT_EQ(reason(), "valid");
}

TEST_F(ArchiveSignatureTest, AChangedByteIsRefusedAnywhere) {
  for (const std::size_t place : {std::size_t{0}, content_.size() / 2, content_.size() - 1}) {
    std::string changed = content_;
    changed[place] = static_cast<char>(changed[place] ^ 0x80);
    writeFile(file_, changed);
    EXPECT_EQ(reason(), "verification: The signature of the archive is not valid") << place;
  }
}

TEST_F(ArchiveSignatureTest, ADifferentLengthIsRefused) {
  const std::string otherLength = "verification: The archive has another length than announced";
  writeFile(file_, content_.substr(1));
  EXPECT_EQ(reason(), otherLength);
  writeFile(file_, content_ + "a");
  EXPECT_EQ(reason(), otherLength);
  writeFile(file_, "");
  EXPECT_EQ(reason(), otherLength);
  EXPECT_EQ(reason(file_, 0, key_), otherLength);
  EXPECT_EQ(reason(file_, ~std::uint64_t{0}, key_), otherLength);
}

TEST_F(ArchiveSignatureTest, AnotherKeyIsRefused) {
  EXPECT_EQ(reason(file_, content_.size(), SigningKey::make()),
            "verification: The signature of the archive is not valid");
}

TEST_F(ArchiveSignatureTest, AMissingFileIsRefused) {
  EXPECT_EQ(reason(folder_.path() / "none", 1, key_),
            "verification: The archive cannot be read (No such file or directory)");
}

TEST_F(ArchiveSignatureTest, ALinkAndAFolderAreRefused) {
  const auto link = folder_.path() / "link";
  std::filesystem::create_symlink("archive", link);
  EXPECT_NE(reason(link, content_.size(), key_), "valid");
  EXPECT_NE(reason(folder_.path(), std::filesystem::exists(folder_.path()) ? 4096 : 1, key_),
            "valid");
}

TEST(Ed25519Test, KeysAreReadFromExactBase64) {
  const auto key = SigningKey::make();
  const std::string text = key.publicText();
  EXPECT_TRUE(readPublicKey(text));
  for (const std::string& wrong :
       {std::string(), text.substr(1), text + "A", " " + text, text + "\n",
        text.substr(0, text.size() - 1), std::string(44, '!'), text + text}) {
    EXPECT_FALSE(readPublicKey(wrong)) << wrong;
  }
  EXPECT_FALSE(readSignature(text));
}

TEST(Ed25519Test, TheZeroKeyVerifiesNothing) {
  const std::string content = "content";
  EXPECT_FALSE(isSignedBy(Ed25519PublicKey{},
                          {reinterpret_cast<const unsigned char*>(content.data()), content.size()},
                          Ed25519Signature{}));
}

}  // namespace
}  // namespace navora
