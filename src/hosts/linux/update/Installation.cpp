#include "hosts/linux/update/Installation.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include <unistd.h>

#include "support/Json.h"

namespace navora {
namespace {

constexpr std::size_t maximumRecordLength = 4096;
constexpr std::array<std::string_view, 4> ownNames{Installation::recordName, "bin", "libexec",
                                                   "share"};

bool isOwn(const std::filesystem::path& entry) {
  return std::ranges::find(ownNames, entry.filename().string()) != ownNames.end();
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
  std::error_code error;
  const std::filesystem::directory_iterator entries(folder_, error);
  if (error || !std::ranges::all_of(entries, isOwn)) return false;
  return ::access(folder_.parent_path().c_str(), W_OK | X_OK) == 0 &&
         ::access(folder_.c_str(), W_OK | X_OK) == 0;
}

std::string Installation::record(const std::string& version) {
  return Json{{"version", version}}.dump() + "\n";
}

}  // namespace navora
