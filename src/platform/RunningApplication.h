#pragma once

namespace navora {

// Another application of the user, or this one, as it was when it was asked for.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;

  virtual bool isTerminated() const = 0;
  // Gives it the keyboard focus again.
  virtual void activate() = 0;
};

}  // namespace navora
