#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

#include <gmock/gmock.h>

#include "hosts/linux/installation/ArchiveReader.h"
#include "linux/installation/TestArchive.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Kind = TestMember::Kind;

class ArchiveReaderTest : public testing::Test {
 protected:
  // Returns the members, like "file navora/a x: content", and the error if there is one.
  std::vector<std::string> read(const std::filesystem::path& file) const {
    std::vector<std::string> lines;
    auto reader = ArchiveReader::open(file);
    if (!reader) return {reader.error()};
    while (true) {
      auto member = reader->next();
      if (!member) {
        lines.push_back(member.error());
        return lines;
      }
      if (!*member) return lines;
      lines.push_back(describe(*reader, **member));
    }
  }
  std::vector<std::string> read(const std::vector<TestMember>& members,
                                TestCompression compression = TestCompression::zstd) const {
    EXPECT_TRUE(writeTestArchive(archive_, members, compression));
    return read(archive_);
  }
  std::string last(const std::vector<TestMember>& members) const {
    const auto lines = read(members);
    return lines.empty() ? "nothing" : lines.back();
  }

  static std::string describe(ArchiveReader& reader, const ArchiveMember& member) {
    if (member.kind == ArchiveMember::Kind::folder) return "folder " + member.path.string();
    if (member.kind == ArchiveMember::Kind::symbolicLink)
      return "link " + member.path.string() + " to " + member.target;
    std::string content;
    std::array<char, 3> buffer{};
    while (true) {
      const auto size = reader.read(buffer);
      if (!size) return size.error();
      if (*size == 0) break;
      content.append(buffer.data(), *size);
    }
    return "file " + member.path.string() + (member.isExecutable ? " x: " : ": ") + content;
  }

  const TemporaryDirectory folder_;
  const std::filesystem::path archive_ = folder_.path() / "archive";
};

TEST_F(ArchiveReaderTest, FilesFoldersAndLinksAreRead) {
  EXPECT_THAT(read({{.path = "./", .kind = Kind::folder},
                    {.path = "navora/", .kind = Kind::folder},
                    {.path = "./navora//a", .content = "hello world"},
                    {.path = "navora/b", .content = "", .mode = 0755},
                    {.path = "navora/c", .content = "x", .mode = 0611},
                    {.path = "navora/d", .kind = Kind::symbolicLink, .target = "a"}}),
              ElementsAre("folder navora", "file navora/a: hello world",
                          "file navora/b x: ", "file navora/c: x", "link navora/d to a"));
}

TEST_F(ArchiveReaderTest, ReadsTheUsualCompressionsOnly) {
  const std::vector<TestMember> members{{.path = "navora/a", .content = "hello"}};
  for (const auto compression :
       {TestCompression::none, TestCompression::gzip, TestCompression::xz, TestCompression::zstd}) {
    EXPECT_THAT(read(members, compression), ElementsAre("file navora/a: hello"));
  }
  EXPECT_THAT(read(members, TestCompression::bzip2),
              testing::Not(ElementsAre("file navora/a: hello")));
}

TEST_F(ArchiveReaderTest, PathsThatLeadOutAreRefused) {
  for (const char* path : {"/etc/passwd", "//etc/passwd", "..", "../a", "navora/../../a",
                           "navora/..", "navora/../a", "./../a", "navora/a/.."}) {
    EXPECT_THAT(last({{.path = path, .content = "x"}}), HasSubstr("has no place")) << path;
    EXPECT_THAT(last({{.path = path, .kind = Kind::folder}}), HasSubstr("has no place")) << path;
  }
}

TEST_F(ArchiveReaderTest, LongPathsAreRefused) {
  std::string path = "navora";
  while (path.size() < 1000)
    path += "/folder";
  EXPECT_THAT(last({{.path = path, .content = "x"}}), "file " + path + ": x");
  EXPECT_THAT(last({{.path = path + std::string(100, 'a'), .content = "x"}}),
              HasSubstr("has no place"));
}

TEST_F(ArchiveReaderTest, SpecialFilesAndHardLinksAreRefused) {
  for (const Kind kind : {Kind::fifo, Kind::characterDevice, Kind::blockDevice}) {
    EXPECT_THAT(last({{.path = "navora/a", .kind = kind}}), HasSubstr("has no place"));
  }
  EXPECT_THAT(last({{.path = "navora/a", .content = "x"},
                    {.path = "navora/b", .kind = Kind::hardLink, .target = "navora/a"}}),
              HasSubstr("has no place"));
  EXPECT_THAT(last({{.path = "navora/b", .kind = Kind::hardLink, .target = "/etc/passwd"}}),
              HasSubstr("has no place"));
}

TEST_F(ArchiveReaderTest, LinksThatLeadOutAreRefused) {
  for (const char* target : {"/etc/passwd", "/", "..", "../..", "../../a", "a/../../../b", "a/..",
                             "a/../b", "./../..", "..//..", "../navora/../.."}) {
    EXPECT_THAT(last({{.path = "navora/bin/../bin", .kind = Kind::symbolicLink, .target = "a"}}),
                HasSubstr("has no place"));
    EXPECT_THAT(last({{.path = "navora/a", .kind = Kind::symbolicLink, .target = target}}),
                HasSubstr("has no place"))
        << target;
  }
  EXPECT_THAT(last({{.path = "navora", .kind = Kind::symbolicLink, .target = "other"}}),
              HasSubstr("has no place"));
  EXPECT_THAT(last({{.path = "navora/a/b", .kind = Kind::symbolicLink, .target = "../../c"}}),
              HasSubstr("has no place"));
  EXPECT_THAT(
      last({{.path = "navora/a", .kind = Kind::symbolicLink, .target = std::string(1025, 'a')}}),
      HasSubstr("has no place"));
}

TEST_F(ArchiveReaderTest, LinksThatStayInsideAreAccepted) {
  EXPECT_THAT(last({{.path = "navora/a/b", .kind = Kind::symbolicLink, .target = "../c/d"}}),
              "link navora/a/b to ../c/d");
  EXPECT_THAT(last({{.path = "navora/a/b", .kind = Kind::symbolicLink, .target = ".."}}),
              "link navora/a/b to ..");
  EXPECT_THAT(last({{.path = "navora/a", .kind = Kind::symbolicLink, .target = "."}}),
              "link navora/a to .");
}

TEST_F(ArchiveReaderTest, TheRootFolderMayComeOnce) {
  EXPECT_THAT(last({{.path = ".", .content = "x"}}), "The archive holds itself");
  EXPECT_THAT(last({{.path = "./", .kind = Kind::folder}, {.path = "././", .kind = Kind::folder}}),
              "The archive holds itself");
}

// Returns a member with its header, which archive writers would not make.
std::string rawMember(const std::string& name, char type, std::string content) {
  constexpr std::size_t blockSize = 512;
  std::string header(blockSize, '\0');
  const auto put = [&header](std::size_t place, const std::string& text) {
    header.replace(place, text.size(), text);
  };
  std::ostringstream size;
  size << std::oct << std::setw(11) << std::setfill('0') << content.size();
  put(0, name);
  put(100, "0000644");
  put(124, size.str());
  put(148, "        ");
  put(156, std::string(1, type));
  put(257, std::string("ustar\00000", 8));
  unsigned sum = 0;
  for (const char c : header)
    sum += static_cast<unsigned char>(c);
  std::ostringstream checksum;
  checksum << std::oct << std::setw(6) << std::setfill('0') << sum;
  put(148, checksum.str() + std::string("\0 ", 2));
  content.resize((content.size() + blockSize - 1) / blockSize * blockSize);
  return header + content;
}

// Skipping the content could take unlimited time.
TEST_F(ArchiveReaderTest, AFolderOrALinkWithContentIsRefused) {
  const std::string file = rawMember("navora/a", '0', "hello");
  const std::string sizeOfNext = rawMember("size", 'x', "12 size=512\n");
  const std::string content(512, 'c');
  const std::string end(1024, '\0');
  writeFile(archive_, file + rawMember("navora/b/", '5', "") + end);
  EXPECT_THAT(read(archive_), ElementsAre("file navora/a: hello", "folder navora/b"));
  writeFile(archive_, file + sizeOfNext + rawMember("navora/b/", '5', "") + content + end);
  EXPECT_THAT(read(archive_), ElementsAre("file navora/a: hello", HasSubstr("has no place")));
  writeFile(archive_, file + sizeOfNext + rawMember("./", '5', "") + content + end);
  EXPECT_THAT(read(archive_), ElementsAre("file navora/a: hello", HasSubstr("has no place")));
}

TEST_F(ArchiveReaderTest, OtherFilesAreRefused) {
  EXPECT_THAT(read(folder_.path() / "none"), ElementsAre(HasSubstr("cannot be opened")));
  EXPECT_THAT(read(folder_.path()), ElementsAre(HasSubstr("The archive")));
  for (const std::string& content :
       {std::string(), std::string("hello"), std::string(100'000, 'x'),
        std::string("\x28\xB5\x2F\xFD garbage"), std::string("\x1F\x8B\x08 garbage")}) {
    writeFile(archive_, content);
    EXPECT_THAT(read(archive_), ElementsAre(HasSubstr("The archive"))) << content;
  }
}

TEST_F(ArchiveReaderTest, ATruncatedArchiveIsDetectedAtEveryLength) {
  for (const auto compression :
       {TestCompression::gzip, TestCompression::xz, TestCompression::zstd}) {
    const std::vector<TestMember> members{{.path = "navora/a", .content = std::string(3000, 'a')},
                                          {.path = "navora/b", .content = "hello"}};
    const auto whole = read(members, compression);
    ASSERT_EQ(whole.size(), 2U);
    const std::string bytes = readFile(archive_);
    // The last bytes may belong to the compression's trailer.
    for (std::size_t size = 0; size + 20 < bytes.size(); size += 7) {
      writeFile(archive_, bytes.substr(0, size));
      const auto lines = read(archive_);
      ASSERT_TRUE(!lines.empty() && lines.back().starts_with("The archive")) << size;
    }
  }
}

TEST_F(ArchiveReaderTest, BytesConsumedGrowsToTheFileSize) {
  ASSERT_TRUE(writeTestArchive(archive_, {{.path = "navora/a", .content = std::string(1000, 'a')}},
                               TestCompression::none));
  auto reader = ArchiveReader::open(archive_);
  ASSERT_TRUE(reader);
  ASSERT_TRUE(reader->next());
  const auto before = reader->bytesConsumed();
  ASSERT_TRUE(reader->next());
  EXPECT_LE(before, reader->bytesConsumed());
  EXPECT_LE(reader->bytesConsumed(), std::filesystem::file_size(archive_));
}

}  // namespace
}  // namespace navora
