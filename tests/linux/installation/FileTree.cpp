#include "linux/installation/FileTree.h"

#include <sstream>

#include <sys/stat.h>

#include "tests/support/Files.h"

namespace navora {
namespace {

std::string describe(const std::filesystem::path& path) {
  struct stat status{};
  if (::lstat(path.c_str(), &status) != 0) return "unreadable";
  std::ostringstream text;
  text << std::oct << (status.st_mode & 07777U) << ' ';
  if (S_ISLNK(status.st_mode)) return "link to " + std::filesystem::read_symlink(path).string();
  if (S_ISDIR(status.st_mode)) {
    text << "folder";
  } else if (S_ISREG(status.st_mode)) {
    text << "file " << readFile(path);
  } else {
    text << "special";
  }
  return text.str();
}

}  // namespace

FileTree describeTree(const std::filesystem::path& folder, const std::filesystem::path& except) {
  FileTree tree;
  std::filesystem::recursive_directory_iterator entry(folder);
  for (; entry != std::filesystem::recursive_directory_iterator(); ++entry) {
    tree[entry->path().lexically_relative(folder).string()] = describe(entry->path());
    if (entry->path() == except) entry.disable_recursion_pending();
  }
  return tree;
}

}  // namespace navora
