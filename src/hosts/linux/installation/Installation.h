#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace navora {

// A folder with one version of the application and nothing else, so that it can be replaced as a
// whole:
//
//   navora/installation.json   {"version": "1.2"}
//   navora/bin/navora          and the other files of that version
//
// A package or `cmake --install` to a shared prefix does not make such a folder.
class Installation {
 public:
  static constexpr const char* recordName = "installation.json";

  // Returns std::nullopt if `folder` has no valid installation.json.
  static std::optional<Installation> at(const std::filesystem::path& folder);
  // Returns the installation that the running program belongs to.
  static std::optional<Installation> ofThisProgram();

  const std::filesystem::path& folder() const { return folder_; }
  const std::string& version() const { return version_; }
  std::filesystem::path executable() const { return executableIn(folder_); }
  // For a folder that need not be a valid installation.
  static std::filesystem::path executableIn(const std::filesystem::path& folder) {
    return folder / "bin" / "navora";
  }

  // Returns whether this user may replace the folder: it is theirs, its parent is writable, and it
  // holds nothing but a version's own files. Reads the whole tree.
  bool isReplaceable() const;

  // Returns the content of installation.json.
  static std::string record(const std::string& version);

 private:
  Installation(std::filesystem::path folder, std::string version)
      : folder_(std::move(folder)), version_(std::move(version)) {}

  std::filesystem::path folder_;
  std::string version_;
};

}  // namespace navora
