#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "service/testing/HttpMessage.h"

namespace navora::service {

/// The files of a directory below "/__test/pages/". In .html files each "{{name}}" becomes the
/// query parameter of that name, as it is.
class TestPages {
 public:
  static constexpr const char* prefix = "/__test/pages/";

  explicit TestPages(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// The bytes of the answer.
  std::string answer(const WireRequest& request) const;

 private:
  std::filesystem::path directory_;
};

}  // namespace navora::service
