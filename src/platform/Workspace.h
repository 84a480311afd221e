#pragma once

#include "support/Url.h"

namespace navora {

// The desktop around the application.
class Workspace {
 public:
  virtual ~Workspace() = default;

  // Hands the URL to the user's default application for it. A desktop without one does nothing.
  virtual void open(const Url& url) = 0;
};

}  // namespace navora
