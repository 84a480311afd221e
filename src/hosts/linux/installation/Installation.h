#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace navora {

// A folder that holds one version of the application and nothing else, so that another version can
// take its place as a whole:
//
//   navora/installation.json   {"version": "1.2"}
//   navora/bin/navora          and whatever else belongs to it
//
// What a package manager or `cmake --install` has put among other programs is no such folder.
class Installation {
 public:
  static constexpr const char* recordName = "installation.json";

  // None where there is no valid record.
  static std::optional<Installation> at(const std::filesystem::path& folder);
  // The one that the running program belongs to.
  static std::optional<Installation> ofThisProgram();

  const std::filesystem::path& folder() const { return folder_; }
  const std::string& version() const { return version_; }
  std::filesystem::path executable() const { return executableIn(folder_); }
  // Of a version that may not have been looked at yet, or lies elsewhere by now.
  static std::filesystem::path executableIn(const std::filesystem::path& folder) {
    return folder / "bin" / "navora";
  }

  // Whether its user may put another version in its place: it is theirs, the folder that it lies in
  // can be written to, and nothing in it is somebody else's.
  bool isReplaceable() const;

  static std::string record(const std::string& version);

 private:
  Installation(std::filesystem::path folder, std::string version)
      : folder_(std::move(folder)), version_(std::move(version)) {}

  std::filesystem::path folder_;
  std::string version_;
};

}  // namespace navora
