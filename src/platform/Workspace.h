#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "support/Url.h"

namespace navora {

struct Screen {
  Rectangle frame;
  // The frame without the desktop's own bars and panels.
  Rectangle visibleFrame;

  bool operator==(const Screen&) const = default;
};

// A running application of the user, possibly this one.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;

  virtual bool isTerminated() const = 0;
  // Brings the application to the front and gives it the keyboard focus.
  virtual void activate() = 0;
};

// The user's desktop environment. Main thread only.
class Workspace {
 public:
  virtual ~Workspace() = default;

  // Opens the URL, as it was parsed, in the user's default application for it; does nothing if
  // there is none.
  virtual void open(const Url& url) = 0;

  // Returns the application that has the keyboard focus, or null.
  virtual std::shared_ptr<RunningApplication> frontmostApplication() = 0;

  virtual std::vector<Screen> screens() const = 0;
  virtual std::optional<Screen> mainScreen() const = 0;
  virtual Point mouseLocation() const = 0;
};

}  // namespace navora
