#include "contracts/FileReplacementContract.h"
#include "frameworks/Foundation/FoundationState.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/MacMainQueue.h"
#include "hosts/macos/web/ReplacementFolder.h"
#include "platform/PosixFileReplacement.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class MacDisk {
 public:
  MacDisk() { doubles::FoundationState::shared().temporaryItems = temporaryItems_.path(); }
  ~MacDisk() { EXPECT_TRUE(std::filesystem::is_empty(temporaryItems_.path())); }
  MacDisk(const MacDisk&) = delete;
  MacDisk& operator=(const MacDisk&) = delete;

  Expected<std::unique_ptr<FileReplacement>, PlatformError> replace(
      const std::filesystem::path& destination) {
    return PosixFileReplacement::make(destination, mainQueue_, makeReplacementFolder,
                                      platformErrorFromErrno);
  }
  std::filesystem::path path(const std::string& name) { return folder_.path() / name; }
  void write(const std::filesystem::path& path, const std::string& content) {
    writeFile(path, content);
  }
  std::string read(const std::filesystem::path& path) { return readFile(path); }
  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      all.push_back(entry.path().filename().string());
    }
    return all;
  }
  void turn() {}
  std::filesystem::path unwritable() { return folder_.path() / "missing" / "file"; }

 private:
  MacMainQueue mainQueue_;
  TemporaryDirectory folder_;
  TemporaryDirectory temporaryItems_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FileReplacementContractTest, MacDisk);

}  // namespace
}  // namespace navora
