#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "service/testing/HttpMessage.h"

namespace navora::service {

// Serves the files of a directory below "/__test/pages/". In .html files each "{{name}}" is
// replaced by the query parameter of that name, unescaped.
class TestPages {
 public:
  static constexpr const char* prefix = "/__test/pages/";

  explicit TestPages(std::filesystem::path directory) : directory_(std::move(directory)) {}

  // Returns the bytes of the reply.
  std::string answer(const WireRequest& request) const;

 private:
  std::filesystem::path directory_;
};

}  // namespace navora::service
