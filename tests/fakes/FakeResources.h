#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/Resources.h"
#include "support/Text.h"

namespace navora {

// The resources that the test adds; initially none, as in a broken installation.
class FakeResources final : public Resources {
 public:
  void put(const std::string& name, const std::string& extension, std::string content) {
    files_.insert_or_assign(name + "." + extension, std::move(content));
  }

  std::optional<std::string> read(std::string_view name,
                                  std::string_view extension) const override {
    const auto file = files_.find(std::string(name).append(".").append(extension));
    if (file == files_.end() || !isValidUtf8(file->second)) return std::nullopt;
    return file->second;
  }

 private:
  std::map<std::string, std::string> files_;
};

}  // namespace navora
