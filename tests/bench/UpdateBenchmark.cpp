// The time and peak memory of verifying and unpacking an update of 100 MB and of reading a long
// feed. Each step runs in a process of its own, so that its peak is measured alone.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <random>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/ArchiveSignature.h"
#include "hosts/linux/installation/UpdateUnpacker.h"
#include "make-update/ArchiveWriter.h"
#include "make-update/Feed.h"
#include "make-update/SigningKey.h"
#include "tests/support/Files.h"

namespace {

using navora::SigningKey;
using Seconds = std::chrono::duration<double>;

constexpr int feedItems = 500;
constexpr int files = 20;
constexpr std::size_t bytesPerFile = 5'000'000;

// Returns a field of /proc/self/status, in megabytes.
double memory(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":"))
      return std::strtod(line.c_str() + name.size() + 1, nullptr) / 1024;
  }
  return 0;
}

// The peak of the process's anonymous memory. File-backed pages are not counted: the system can
// reclaim them at any time.
class OwnMemory {
 public:
  void sample() { most_ = std::max(most_, memory("RssAnon")); }
  double most() const { return most_; }

 private:
  double most_ = 0;
};

// Runs the step in a child process and prints its time and peak memory. Returns whether it
// succeeded.
bool measure(const std::string& name, const std::function<bool(OwnMemory&)>& step) {
  std::cout << std::flush;
  // Return free heap memory to the system: the child would reuse it without raising its peak.
  ::malloc_trim(0);
  const pid_t process = ::fork();
  if (process == 0) {
    std::ofstream("/proc/self/clear_refs") << 5;
    OwnMemory own;
    own.sample();
    const double before = own.most();
    const auto begin = std::chrono::steady_clock::now();
    const bool succeeded = step(own);
    const Seconds time = std::chrono::steady_clock::now() - begin;
    own.sample();
    std::cout << std::fixed << std::setprecision(3) << std::setw(30) << std::left << name
              << time.count() << " s" << std::setprecision(1) << "   peak " << memory("VmHWM")
              << " MB, own " << own.most() << " MB (" << before << " MB before)"
              << (succeeded ? "" : "   FAILED") << std::endl;
    ::_exit(succeeded ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = 0;
  return process > 0 && ::waitpid(process, &status, 0) == process && status == 0;
}

// Creates files that hardly compress, like programs, in the size of an application that bundles its
// web engine.
void makeInstallation(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder / "share");
  std::mt19937_64 random(1);
  for (int file = 0; file < files; ++file) {
    std::ofstream stream(folder / "share" / std::to_string(file), std::ios::binary);
    for (std::size_t written = 0; written < bytesPerFile; written += sizeof(std::uint64_t)) {
      const std::uint64_t word = random();
      stream.write(reinterpret_cast<const char*>(&word), sizeof word);
    }
  }
}

std::string makeFeed() {
  std::string feed;
  for (int item = 0; item < feedItems; ++item) {
    navora::FeedItem release;
    release.version = "1." + std::to_string(item);
    release.link = "https://navora.example/releases";
    release.published = "Sun, 09 Sep 2001 01:46:40 +0000";
    release.archiveUrl = "navora-" + release.version + ".tar.zst";
    release.archiveLength = 1;
    release.archiveSignature = std::string(86, 'A') + "==";
    feed = navora::addToFeed(feed, release).value_or("");
  }
  return feed;
}

int fail(const std::string& reason) {
  std::cerr << "navora-update-benchmark: " << reason << '\n';
  return EXIT_FAILURE;
}

int run(const std::filesystem::path& folder) {
  const auto archive = folder / "archive";
  makeInstallation(folder / "installed");
  if (const auto failure = navora::writeArchive(folder / "installed", "2.0", archive))
    return fail(*failure);
  std::filesystem::create_directories(folder / "new");
  const auto key = SigningKey::make();
  const auto publicKey = navora::readPublicKey(key.publicText());
  const auto signature = navora::readSignature(key.signFile(archive).value_or(""));
  if (!publicKey || !signature) return fail("The archive cannot be signed");
  const auto length = std::filesystem::file_size(archive);
  const std::string feed = makeFeed();
  const auto address = navora::Url::parse("https://updates.example/appcast.xml");
  std::cout << "archive of " << length / 1'000'000 << " MB, feed of " << feed.size() / 1000
            << " kB with " << feedItems << " items\n";

  const bool verified = measure("verify the archive", [&](OwnMemory&) {
    return !navora::verifyArchive(archive, length, *signature, *publicKey);
  });
  const bool unpacked = measure("unpack it, onto the disk", [&](OwnMemory& own) {
    const std::atomic<bool> cancelled = false;
    return !navora::UpdateUnpacker::unpack(
        archive, folder / "new", {}, [&own](double) { own.sample(); }, cancelled);
  });
  const bool read = measure("read the feed", [&](OwnMemory&) {
    const auto entries = navora::readAppcast(feed, *address);
    return entries && entries->size() == feedItems;
  });
  return verified && unpacked && read ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main() {
  const navora::TemporaryDirectory folder("navora-update-benchmark");
  return run(folder.path());
}
