#pragma once

#include "platform/Workspace.h"

namespace navora {

// Screens, pointer and URL handlers, from GDK and GIO.
class LinuxWorkspace final : public Workspace {
 public:
  void open(const Url& url) override;
  std::shared_ptr<RunningApplication> frontmostApplication() override;
  std::vector<Screen> screens() const override;
  std::optional<Screen> mainScreen() const override;
  Point mouseLocation() const override;
};

}  // namespace navora
