#include "hosts/linux/installation/Installation.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "support/Json.h"

namespace navora {
namespace {

constexpr std::size_t maximumRecordLength = 4096;
constexpr std::array<std::string_view, 4> ownNames{Installation::recordName, "bin", "libexec",
                                                   "share"};

bool isOwn(const std::filesystem::directory_entry& entry) {
  return std::ranges::find(ownNames, entry.path().filename().string()) != ownNames.end();
}

bool isWritable(const std::filesystem::path& folder) {
  return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

bool holdsOnlyOwnNames(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (!isOwn(*entry)) return false;
  }
  return !error;
}

// Returns whether the user may remove everything in the folder, as is done with the old version.
bool canBeEmptied(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::recursive_directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::recursive_directory_iterator();
       entry.increment(error)) {
    if (!entry->is_symlink(error) && entry->is_directory(error) && !isWritable(entry->path()))
      return false;
  }
  return !error;
}

// Returns whether the folder belongs to this user and can be renamed, which a mount point cannot.
bool isOwnFolder(const std::filesystem::path& folder) {
  struct stat status{};
  struct stat above{};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && ::stat(folder.parent_path().c_str(), &above) == 0 &&
         status.st_dev == above.st_dev;
}

}  // namespace

std::optional<Installation> Installation::at(const std::filesystem::path& folder) {
  std::ifstream file(folder / recordName, std::ios::binary);
  std::string text(maximumRecordLength, '\0');
  if (!file) return std::nullopt;
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  const auto record = parseJson(text);
  if (!record || !record->is_object()) return std::nullopt;
  auto version = stringMember(*record, "version");
  if (!version || version->empty()) return std::nullopt;
  return Installation(folder, *std::move(version));
}

std::optional<Installation> Installation::ofThisProgram() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return std::nullopt;
  auto installation = at(program.parent_path().parent_path());
  if (!installation || installation->executable() != program) return std::nullopt;
  return installation;
}

bool Installation::isReplaceable() const {
  return isOwnFolder(folder_) && isWritable(folder_.parent_path()) && isWritable(folder_) &&
         holdsOnlyOwnNames(folder_) && canBeEmptied(folder_);
}

std::string Installation::record(const std::string& version) {
  return Json{{"version", version}}.dump() + "\n";
}

}  // namespace navora
