#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/RunningApplication.h"
#include "support/Url.h"

namespace navora {

struct Screen {
  Rectangle frame;
  // Without what the desktop keeps for its own bars.
  Rectangle visibleFrame;

  bool operator==(const Screen&) const = default;
};

// The desktop around the application.
class Workspace {
 public:
  virtual ~Workspace() = default;

  // Hands the URL to the user's default application for it. A desktop without one does nothing.
  virtual void open(const Url& url) = 0;

  // The application that has the keyboard focus, if any.
  virtual std::shared_ptr<RunningApplication> frontmostApplication() = 0;

  virtual std::vector<Screen> screens() const = 0;
  virtual std::optional<Screen> mainScreen() const = 0;
  virtual Point mouseLocation() const = 0;
};

}  // namespace navora
