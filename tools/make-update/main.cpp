// Makes a key for signing releases, or a release: a signed archive and its item in a feed.
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/AppcastFormat.h"
#include "hosts/linux/installation/UpdateAddress.h"
#include "make-update/ArchiveWriter.h"
#include "make-update/Feed.h"
#include "make-update/SigningKey.h"
#include "platform/FileDescriptor.h"
#include "support/Expected.h"
#include "support/Text.h"
#include "support/Url.h"

namespace {

using navora::AppcastFormat;
using navora::SigningKey;

constexpr std::string_view usage =
    R"(navora-make-update key FILE
    Writes a new secret key, and prints the public one for NAVORA_UPDATE_PUBLIC_KEY.

navora-make-update release --installation FOLDER --key FILE --url ADDRESS --output FOLDER
                           [options]
    Packs what "cmake --install" has installed into the first folder, signs it, and adds it to the
    feed "appcast.xml" in the last one, to be served below the address. An archive that is there
    already is never changed; repeated with the same content, this changes the feed only.

    --version VERSION            of the release; by default that of this build
    --link ADDRESS               a page about the release, https
    --minimum-system VERSION     of the C library
    --channel NAME               only for users of this channel
    --phased SECONDS             delay between one seventh of the users and the next
    --critical                   offered to all users at once, even with --phased
    --informational              announced, but not installed
    --sign-feed                  sign the feed as a whole
)";

struct Arguments {
  std::map<std::string, std::string, std::less<>> values;
  std::set<std::string, std::less<>> switches;

  std::string value(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::string() : found->second;
  }
};

std::optional<Arguments> readArguments(const std::vector<std::string>& words) {
  static const std::set<std::string, std::less<>> names{
      "--installation", "--version",        "--key",     "--url",   "--output",
      "--link",         "--minimum-system", "--channel", "--phased"};
  static const std::set<std::string, std::less<>> switches{"--critical", "--informational",
                                                           "--sign-feed"};
  Arguments arguments;
  for (auto word = words.begin(); word != words.end(); ++word) {
    if (switches.contains(*word)) {
      arguments.switches.insert(*word);
    } else if (names.contains(*word) && std::next(word) != words.end()) {
      const auto name = word++;
      arguments.values[*name] = *word;
    } else {
      return std::nullopt;
    }
  }
  arguments.values.try_emplace("--version", NAVORA_VERSION);
  for (const auto* required : {"--installation", "--version", "--key", "--url", "--output"}) {
    if (arguments.value(required).empty()) return std::nullopt;
  }
  return arguments;
}

int fail(const std::string& reason) {
  std::cerr << "navora-make-update: " << reason << '\n';
  return EXIT_FAILURE;
}

int makeKey(const std::filesystem::path& file) {
  const auto key = SigningKey::make();
  // Readable by its owner only from the first byte on. Fails for whatever is there already, be it a
  // link that leads nowhere.
  const navora::FileDescriptor descriptor(::open(
      file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!descriptor) return fail(file.string() + ": " + std::generic_category().message(errno));
  if (!descriptor.write(key.secretText() + '\n') || !descriptor.flush()) {
    const int reason = errno;
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return fail(file.string() + ": " + std::generic_category().message(reason));
  }
  std::cout << key.publicText() << '\n';
  return EXIT_SUCCESS;
}

std::string now() {
  const std::time_t time = std::time(nullptr);
  std::string text(64, '\0');
  std::tm parts{};
  ::gmtime_r(&time, &parts);
  text.resize(std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S +0000", &parts));
  return text;
}

// Returns the empty string if the file does not exist, std::nullopt if it cannot be read.
std::optional<std::string> readFeed(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::status(file, error).type() == std::filesystem::file_type::not_found)
    return std::string();
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::ostringstream text;
  // Inserting an empty stream buffer would set failbit.
  if (stream.peek() != std::ifstream::traits_type::eof()) text << stream.rdbuf();
  if (stream.bad() || text.fail()) return std::nullopt;
  return text.str();
}

// Replaces the file atomically.
bool replaceFile(const std::filesystem::path& file, const std::string& text) {
  const std::filesystem::path next = file.string() + ".new";
  std::ofstream stream(next, std::ios::binary);
  stream << text;
  stream.close();
  std::error_code error;
  if (stream) std::filesystem::rename(next, file, error);
  return stream && !error;
}

// Returns whether the updater would accept the feed's first release and download its archive. The
// feed's own URL, which relative ones are resolved against, is not known here.
bool isAcceptable(const std::string& feed, const std::string& version) {
  static const auto anywhere = navora::Url::parse("https://localhost/");
  const auto entries = navora::readAppcast(feed, *anywhere);
  return entries && !entries->empty() && entries->front().version == version &&
         entries->front().archive && navora::isUpdateAddress(entries->front().archive->url);
}

std::string signedFeed(const std::string& feed, const SigningKey& key) {
  const auto signature =
      key.sign({reinterpret_cast<const unsigned char*>(feed.data()), feed.size()});
  return feed + AppcastFormat::signatureBeginning + "\nedSignature: " + signature +
         "\nlength: " + std::to_string(feed.size()) + "\n-->\n";
}

// Removes the signature of a signed feed.
std::string unsignedFeed(const std::string& feed) {
  return feed.substr(0, feed.rfind(AppcastFormat::signatureBeginning));
}

// Returns std::nullopt if `--phased` is not a number.
std::optional<navora::FeedItem> itemFor(const Arguments& arguments,
                                        const std::string& archiveName) {
  navora::FeedItem item{.version = arguments.value("--version"),
                        .link = arguments.value("--link"),
                        .published = now(),
                        .minimumSystemVersion = arguments.value("--minimum-system"),
                        .channel = arguments.value("--channel"),
                        .phasedRolloutInterval = std::nullopt,
                        .isCritical = arguments.switches.contains("--critical"),
                        .isInformational = arguments.switches.contains("--informational"),
                        .archiveUrl = arguments.value("--url") + "/" + archiveName,
                        .archiveLength = 0,
                        .archiveSignature = ""};
  if (const std::string phased = arguments.value("--phased"); !phased.empty()) {
    const auto seconds = navora::wholeNumber<std::uint32_t>(phased);
    if (!seconds) return std::nullopt;
    item.phasedRolloutInterval = std::chrono::seconds(*seconds);
  }
  return item;
}

// The application opens no other links.
bool isLink(const std::string& text) {
  const auto url = navora::Url::parse(text);
  return url && url->scheme() == "https" && url->host() && !url->host()->empty();
}

// Returns the feed with the item, or the reason why there must be no such release.
navora::Expected<std::string, std::string> feedWith(const navora::FeedItem& item,
                                                    const std::filesystem::path& feedFile) {
  const auto before = readFeed(feedFile);
  auto feed = before ? navora::addToFeed(unsignedFeed(*before), item) : std::nullopt;
  if (!feed) return navora::Unexpected(std::string("appcast.xml is not a feed"));
  if (!isAcceptable(*feed, item.version)) {
    return navora::Unexpected(
        std::string("The updater would refuse this release: check its version and its addresses"));
  }
  return *std::move(feed);
}

// Removes a file when it is destroyed.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path path) : path_(std::move(path)) {}
  ~TemporaryFile() {
    std::error_code error;
    std::filesystem::remove(path_, error);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  const std::filesystem::path path_;
};

// Gives the archive its name, unless a file has it: users may be downloading that one, and the feed
// that they have read holds its signature. Returns the reason if that file is another one.
std::optional<std::string> publish(const TemporaryFile& archive, const std::string& signature,
                                   const std::filesystem::path& name, const SigningKey& key) {
  std::error_code error;
  std::filesystem::create_hard_link(archive.path(), name, error);
  if (!error) return std::nullopt;
  if (error != std::errc::file_exists) return name.string() + ": " + error.message();
  // The same content has the same signature.
  if (key.signFile(name) == signature) return std::nullopt;
  return name.string() + " is already published with other content";
}

int makeRelease(const Arguments& arguments) {
  const auto key = SigningKey::fromFile(arguments.value("--key"));
  if (!key) return fail("The key cannot be read");
  const std::filesystem::path output = arguments.value("--output");
  const auto feedFile = output / "appcast.xml";
  const std::string name = "navora-" + arguments.value("--version") + ".tar.zst";
  auto item = itemFor(arguments, name);
  if (!item) return fail(arguments.value("--phased") + " is not a number of seconds");
  if (!item->link.empty() && !isLink(item->link)) return fail("The link is not an https address");
  // With stand-ins, so that a release that is refused leaves no file.
  item->archiveLength = 1;
  item->archiveSignature = key->sign({});
  if (const auto feed = feedWith(*item, feedFile); !feed) return fail(feed.error());

  std::error_code error;
  std::filesystem::create_directories(output, error);
  const TemporaryFile archive(output / (name + ".new"));
  if (const auto failure =
          navora::writeArchive(arguments.value("--installation"), item->version, archive.path())) {
    return fail(*failure);
  }
  const auto signature = key->signFile(archive.path());
  if (!signature) return fail("The archive cannot be read");
  item->archiveLength = std::filesystem::file_size(archive.path(), error);
  item->archiveSignature = *signature;
  const auto feed = feedWith(*item, feedFile);
  if (!feed) return fail(feed.error());
  if (const auto failure = publish(archive, *signature, output / name, *key)) return fail(*failure);
  if (!replaceFile(feedFile,
                   arguments.switches.contains("--sign-feed") ? signedFeed(*feed, *key) : *feed)) {
    return fail("appcast.xml cannot be written");
  }
  std::cout << (output / name).string() << '\n';
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() == 2 && words.front() == "key") return makeKey(words.back());
  if (!words.empty() && words.front() == "release") {
    if (const auto arguments = readArguments({words.begin() + 1, words.end()}))
      return makeRelease(*arguments);
  }
  std::cerr << usage;
  return EXIT_FAILURE;
}
