#include "service/storage/SampleData.h"

#include <string>
#include <vector>

namespace navora::service {
namespace {

struct Line {
  const char* author;
  const char* text;
};

void addRoom(Storage& storage, const User& user, const std::string& circleId, const char* name,
             const std::vector<Line>& lines) {
  const std::string roomId = storage.circles.addRoom(circleId, name);
  for (const Line& line : lines) {
    storage.circles.addMessage(user.id, roomId, line.author, line.text);
  }
}

void addCircles(Storage& storage, const User& user) {
  const std::string family = storage.circles.addCircle(user.id, "Family");
  addRoom(storage, user, family, "Weekend",
          {{"Ines", "The cabin is free from Friday evening. Shall we take it?"},
           {"Tomas", "Yes! I can bring the big pot and the board games."},
           {"Ines", "Then I only need to know who drives."}});
  addRoom(storage, user, family, "Groceries",
          {{"Tomas", "We are out of oats, lemons and dish soap."}});
  const std::string studio = storage.circles.addCircle(user.id, "Studio");
  addRoom(storage, user, studio, "Exhibition",
          {{"Mara", "The frames arrive on the 12th, two days before the opening."},
           {"Jun", "Good. I will keep the afternoon free for hanging."}});
  addRoom(storage, user, studio, "Ideas",
          {{"Jun", "A small series about doors and gates, one print a month."}});
}

void addEvents(Storage& storage, const User& user) {
  struct Entry {
    int daysLater;
    const char* time;
    const char* title;
  };
  const std::vector<Entry> entries{{-9, "18:30", "Choir practice"},
                                   {-4, "", "Library books due"},
                                   {0, "09:30", "Breakfast with Ines"},
                                   {0, "16:00", "Call the framer"},
                                   {2, "18:30", "Choir practice"},
                                   {5, "11:00", "Dentist"},
                                   {6, "", "Cabin weekend"},
                                   {13, "19:00", "Exhibition opening"}};
  const Milliseconds now = currentTime();
  for (const Entry& entry : entries) {
    storage.calendar.add(user.id, isoDate(now, entry.daysLater), entry.time, entry.title);
  }
}

void addNotes(Storage& storage, const User& user) {
  constexpr Milliseconds hour = 3600000;
  struct Entry {
    Milliseconds age;
    const char* text;
  };
  const std::vector<Entry> entries{
      {50 * hour,
       "Ideas for the garden wall\nClimbing roses on the left, the old bench under the pear tree, "
       "a lamp that comes on at dusk. #garden"},
      {27 * hour, "Ask Mara whether the second print run can be on the heavier paper. #studio"},
      {hour / 3, "The sentence from this morning: a gate is a wall that has learned to trust."}};
  for (const Entry& entry : entries) {
    const auto note =
        storage.captures.add(user.id, {entry.text, "fallback", std::nullopt, std::nullopt}, 0);
    storage.database.run("UPDATE captures SET created_at = ? WHERE id = ?",
                         currentTime() - entry.age, note->captureId);
  }
  storage.captures.finishDueJobs(currentTime());
  // Of the sample data, only a message is new; the notes are not.
  storage.database.run("DELETE FROM notifications WHERE user_id = ?", user.id);
  const Json circles = storage.circles.list(user.id);
  storage.notifications.add(user.id, {{"kind", "message"},
                                      {"roomId", circles[0]["rooms"][0]["id"]},
                                      {"lead", "Ines in Weekend:"},
                                      {"text", "Then I only need to know who drives."}});
}

}  // namespace

void addSampleData(Storage& storage, const User& user) {
  Database::Transaction transaction(storage.database);
  if (storage.circles.list(user.id).empty()) {
    addCircles(storage, user);
    addEvents(storage, user);
    addNotes(storage, user);
  }
  transaction.commit();
}

}  // namespace navora::service
