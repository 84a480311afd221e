#include "service/http/Routes.h"
#include "service/support/Text.h"

namespace navora::service {
namespace {

constexpr std::size_t nameLimit = 60;
constexpr std::size_t messageLimit = 2000;

// Returns the trimmed text member `name`. Replies with 422 and returns nullopt if it is missing,
// empty or too long.
std::optional<std::string> requiredText(ApiCall& call, const char* name, std::size_t limit) {
  const auto body = call.object();
  if (!body) return std::nullopt;
  std::string text = trimmed(textMember(*body, name).value_or(""));
  if (text.empty() || utf16Length(text) > limit) {
    call.fail(422, "invalid_text",
              "Write something, at most " + std::to_string(limit) + " characters.");
    return std::nullopt;
  }
  return text;
}

}  // namespace

void addCirclesRoutes(Api& api, Storage& storage,
                      std::function<void(const User&, const std::string& roomId)> messageAdded) {
  api.get("/api/circles", [&storage](ApiCall& call) {
    call.reply({{"circles", storage.circles.list(call.user.id)}});
  });
  api.patch("/api/circles/([^/]+)", [&storage](ApiCall& call) {
    const auto name = requiredText(call, "name", nameLimit);
    if (!name) return;
    if (storage.circles.rename(call.user.id, call.captured(), *name)) {
      call.reply({{"name", *name}});
    } else {
      call.fail(404, "not_found", "There is no such circle.");
    }
  });
  api.post("/api/rooms/([^/]+)/messages", [&storage, messageAdded](ApiCall& call) {
    const auto text = requiredText(call, "text", messageLimit);
    if (!text) return;
    const auto message =
        storage.circles.addMessage(call.user.id, call.captured(), call.user.name, *text);
    if (message) {
      messageAdded(call.user, call.captured());
      call.reply({{"message", *message}}, 201);
    } else {
      call.fail(404, "not_found", "There is no such room.");
    }
  });
}

}  // namespace navora::service
