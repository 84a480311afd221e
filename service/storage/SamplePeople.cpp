#include "service/storage/SamplePeople.h"

namespace navora::service {
namespace {

constexpr const char* answer = "Good to know, thank you!";
constexpr const char* companion = "Ines";

// Returns the last author in the room other than the user.
std::string lastOther(const Json& room, const std::string& user) {
  std::string author = companion;
  for (const Json& message : room["messages"]) {
    if (message["author"] != user) author = message["author"];
  }
  return author;
}

}  // namespace

void SamplePeople::didReceiveMessage(const User& user, const std::string& roomId) {
  for (const Json& circle : storage_.circles.list(user.id)) {
    for (const Json& room : circle["rooms"]) {
      if (room["id"] != roomId) continue;
      const std::string author = lastOther(room, user.name);
      storage_.circles.addMessage(user.id, roomId, author, answer);
      storage_.notifications.add(user.id,
                                 {{"kind", "message"},
                                  {"roomId", roomId},
                                  {"lead", author + " in " + room["name"].get<std::string>() + ":"},
                                  {"text", answer}});
    }
  }
}

void SamplePeople::didReceiveEvent(const User& user, const Json& event) {
  storage_.notifications.add(user.id, {{"kind", "event_changed"},
                                       {"eventUid", event["uid"]},
                                       {"data", {{"date", event["date"]}}},
                                       {"lead", std::string(companion) + " will come along:"},
                                       {"text", event["title"]}});
}

}  // namespace navora::service
