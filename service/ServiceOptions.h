#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "service/support/Time.h"

namespace navora::service {

struct ServiceOptions {
  std::string host = "127.0.0.1";  // A loopback address.
  int port = 0;                    // 0 chooses a free port.
  std::string database = ":memory:";
  std::filesystem::path pages;
  std::map<std::string, std::string> accounts;  // From name to password; never empty.
  Milliseconds jobDelay = 1500;
  std::filesystem::path updates;  // Served as "/updates/"; if empty, the feed has no items.
  bool samples = true;
  bool test = false;
  bool testDriver = false;          // Only with `test`.
  std::filesystem::path testPages;  // Only with `test`; empty if there are none.

  struct Help {};
  struct Mistake {
    std::string message;
  };
  using Parsed = std::variant<ServiceOptions, Help, Mistake>;

  // Parses the arguments after the program name.
  static Parsed parse(const std::vector<std::string>& arguments);

  static std::string usage();
};

}  // namespace navora::service
