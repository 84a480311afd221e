#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/Wait.h"

namespace navora::driver {

// The desktop's handler of http, https, mailto and tel URLs, which only records them.
class OpenedUrls {
 public:
  // Installs the handler in the data and configuration folders of a desktop.
  OpenedUrls(const std::filesystem::path& dataHome, const std::filesystem::path& configHome,
             std::filesystem::path record);

  // Returns the URLs in the order in which their handlers ran. Each handler is a process of its
  // own, so URLs opened in quick succession may change places.
  std::vector<std::string> all() const;
  void clear();
  // Waits until a URL has been opened since the start or clear(), and returns the first.
  std::string waitForFirst(std::chrono::milliseconds timeout = defaultTimeout()) const;

 private:
  std::filesystem::path record_;
};

}  // namespace navora::driver
