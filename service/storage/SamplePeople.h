#pragma once

#include <string>

#include "service/storage/Storage.h"

namespace navora::service {

// Acts for the people of the sample circles, so that notifications of several kinds occur.
class SamplePeople {
 public:
  explicit SamplePeople(Storage& storage) : storage_(storage) {}

  // Replies to the user's message in a room.
  void didReceiveMessage(const User& user, const std::string& roomId);

  // Joins the user's new event.
  void didReceiveEvent(const User& user, const Json& event);

 private:
  Storage& storage_;
};

}  // namespace navora::service
