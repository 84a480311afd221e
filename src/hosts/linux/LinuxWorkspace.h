#pragma once

#include "platform/Workspace.h"

namespace navora {

class LinuxWorkspace final : public Workspace {
 public:
  void open(const Url& url) override;
};

}  // namespace navora
