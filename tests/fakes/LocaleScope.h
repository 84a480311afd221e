#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "locale/DesktopLocale.h"

namespace navora {

// Resets the interface language to its state at launch, and again when it is destroyed: nothing
// requested or detected, and, unless the test sets them, no preferred languages and no catalogs, so
// that texts are shown in Russian.
class LocaleScope {
 public:
  LocaleScope() { reset(); }
  ~LocaleScope() { reset(); }
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;

  void prefer(std::vector<std::string> languages) { *languages_ = std::move(languages); }

  // Replaces the catalog resource as a new launch would.
  void setCatalogs(std::optional<std::string> resource) {
    DesktopLocale::configure([languages = languages_] { return *languages; },
                             [resource = std::move(resource)] { return resource; });
  }

 private:
  void reset() {
    DesktopLocale::requested = "system";
    DesktopLocale::detected.reset();
    languages_->clear();
    setCatalogs(std::nullopt);
  }

  std::shared_ptr<std::vector<std::string>> languages_ =
      std::make_shared<std::vector<std::string>>();
};

}  // namespace navora
