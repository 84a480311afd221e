#pragma once

namespace navora {

// Owns a registration: destroying the token ends it.
class ObserverToken {
 public:
  virtual ~ObserverToken() = default;
};

}  // namespace navora
