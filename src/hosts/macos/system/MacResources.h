#pragma once

#include "platform/Resources.h"

namespace navora {

// The resources of the application bundle.
class MacResources final : public Resources {
 public:
  std::optional<std::string> read(std::string_view name, std::string_view extension) const override;
};

}  // namespace navora
