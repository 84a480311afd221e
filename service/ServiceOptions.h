#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "service/support/Time.h"

namespace navora::service {

struct ServiceOptions {
  std::string host = "127.0.0.1";  ///< A loopback address.
  int port = 0;                    ///< 0: any free port.
  std::string database = ":memory:";
  std::filesystem::path pages;
  std::map<std::string, std::string> accounts;  ///< From name to password; never empty.
  Milliseconds jobDelay = 1500;
  std::filesystem::path updates;  ///< What "/updates/" serves; empty: an empty feed.
  bool samples = true;
  bool test = false;
  bool testDriver = false;          ///< Only with `test`.
  std::filesystem::path testPages;  ///< Only with `test`; empty: none.

  struct Help {};
  struct Mistake {
    std::string message;
  };
  using Parsed = std::variant<ServiceOptions, Help, Mistake>;

  /// Reads the arguments that follow the program's name.
  static Parsed parse(const std::vector<std::string>& arguments);

  static std::string usage();
};

}  // namespace navora::service
