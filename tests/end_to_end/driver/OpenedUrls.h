#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/Wait.h"

namespace navora::driver {

// Stands for the person's browser, mail and telephone programs: the desktop's handler of http,
// https, mailto and tel addresses, which only writes down what it is asked to open.
class OpenedUrls {
 public:
  // Installs the handler into a desktop's private data and configuration folders.
  OpenedUrls(const std::filesystem::path& dataHome, const std::filesystem::path& configHome,
             std::filesystem::path record);

  // In the order of opening.
  std::vector<std::string> all() const;
  void clear();
  // Waits for the next address after the last `clear` or start, and gives the first one.
  std::string waitForFirst(std::chrono::milliseconds timeout = defaultTimeout()) const;

 private:
  std::filesystem::path record_;
};

}  // namespace navora::driver
