#pragma once

namespace navora {

// Keeps a registration alive: releasing it ends the registration.
class ObserverToken {
 public:
  virtual ~ObserverToken() = default;
};

}  // namespace navora
