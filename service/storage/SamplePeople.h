#pragma once

#include <string>

#include "service/storage/Storage.h"

namespace navora::service {

/// The people of the sample circles: they take part, so that there is something to be notified of.
class SamplePeople {
 public:
  explicit SamplePeople(Storage& storage) : storage_(storage) {}

  /// Somebody of the room answers the user's message there.
  void didReceiveMessage(const User& user, const std::string& roomId);

  /// Somebody joins the user's new event.
  void didReceiveEvent(const User& user, const Json& event);

 private:
  Storage& storage_;
};

}  // namespace navora::service
