#include "service/testing/TestControls.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "service/support/Encoding.h"
#include "service/support/Files.h"

namespace navora::service {
namespace {

constexpr std::string_view driverPrefix = "/__test/driver/";
constexpr std::chrono::seconds longPoll(25);
constexpr std::uint64_t defaultTimeout = 10000;

// Pages of other origins on this machine may use the controls too.
const HeaderList& openToAll() {
  static const HeaderList headers{{"Access-Control-Allow-Origin", "*"},
                                  {"Access-Control-Allow-Methods", "GET, POST, DELETE"},
                                  {"Access-Control-Allow-Headers", "content-type"},
                                  {"Cache-Control", "no-store"}};
  return headers;
}

std::string reply(const Json& value, int status = 200) {
  return answerBytes(status, "application/json", jsonText(value), openToAll());
}

std::string failure(int status, const std::string& message) {
  return reply({{"error", {{"message", message}}}}, status);
}

std::string empty(int status) {
  return answerBytes(status, "", "", openToAll());
}

std::string notFound() {
  return failure(404, "There is no such test control.");
}

std::uint64_t numberOr(const std::string& text, std::uint64_t fallback) {
  std::uint64_t value = fallback;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

Json body(const WireRequest& request) {
  return Json::parse(request.body, nullptr, false);
}

std::uint64_t numberMember(const Json& object, const char* name, std::uint64_t fallback) {
  if (!object.is_object() || !object.contains(name)) return fallback;
  return object[name].is_number_unsigned() ? object[name].get<std::uint64_t>() : fallback;
}

}  // namespace

TestControls::TestControls(Storage& storage, const TelemetryLog& telemetry,
                           std::string defaultAccount)
    : storage_(storage), telemetry_(telemetry), defaultAccount_(std::move(defaultAccount)) {}

std::string TestControls::answer(const WireRequest& request, const Connection& connection) {
  const std::string path = request.path();
  const bool post = request.method == "POST";
  const bool get = request.method == "GET";
  if (request.method == "OPTIONS") return empty(204);
  if (path == "/__test/requests") return requests(request, connection);
  if (path == "/__test/faults") return faultRules(request);
  if (path == "/__test/driver.js" && get) return driverScript();
  if (path.starts_with(driverPrefix)) return driver(request, connection);
  if (path == "/__test/telemetry" && get) return reply(telemetry_.counts());
  if (path == "/__test/telemetry/events" && get) return reply(telemetry_.events());
  if (path == "/__test/captures" && get) return captures(request);
  if (path == "/__test/cookies" && post) return setCookies(request);
  if (path == "/__test/sessions/account" && post) return moveSessions(request);
  if (path == "/__test/sessions/clear" && post) {
    storage_.accounts.signEverybodyOut();
    return empty(204);
  }
  if ((path == "/__test/settings" || path == "/__test/notifications") && post) {
    return changeUser(request);
  }
  return notFound();
}

std::string TestControls::requests(const WireRequest& request, const Connection& connection) {
  if (request.method == "DELETE") {
    log_.clear();
    return empty(204);
  }
  if (request.method != "GET") return notFound();
  auto parameters = queryParameters(request.query());
  return reply(log_.read({parameters["method"], parameters["path"]},
                         numberOr(parameters["count"], 0),
                         std::chrono::milliseconds(numberOr(parameters["timeout"], 0)),
                         [&] { return !connection.ended(); }));
}

std::string TestControls::faultRules(const WireRequest& request) {
  if (request.method == "DELETE") {
    faults_.clear();
    return empty(204);
  }
  if (request.method != "POST") return notFound();
  auto rule = FaultRule::parse(body(request));
  if (!rule) return failure(422, "The rule does not describe one fault for one path.");
  faults_.add(*std::move(rule));
  return empty(204);
}

std::string TestControls::driverScript() {
  const auto script = readFile(NAVORA_SERVICE_DRIVER);
  if (!script) return failure(500, "The driver cannot be read.");
  return answerBytes(200, "text/javascript; charset=utf-8", *script, openToAll());
}

std::string TestControls::driver(const WireRequest& request, const Connection& connection) {
  const std::string rest = request.path().substr(driverPrefix.size());
  const std::size_t slash = rest.find('/');
  if (slash == std::string::npos) return notFound();
  const std::string name = percentDecoded(rest.substr(0, slash));
  const std::string action = rest.substr(slash + 1);
  if (action == "next" && request.method == "GET") return nextScript(name, request, connection);
  if (request.method != "POST") return notFound();
  if (action == "register") return reply({{"generation", broker_.registerPage(name)}});
  const Json content = body(request);
  if (action == "evaluate") return evaluate(name, content, connection);
  if (action == "leave") {
    broker_.leave(name, numberMember(content, "generation", 0));
    return empty(204);
  }
  if (action == "result") {
    if (!content.is_object()) return failure(422, "The result is not a JSON object.");
    Json answer = content;
    answer.erase("id");
    broker_.answer(name, numberMember(content, "id", 0), std::move(answer));
    return empty(204);
  }
  return notFound();
}

std::string TestControls::nextScript(const std::string& name, const WireRequest& request,
                                     const Connection& connection) {
  auto parameters = queryParameters(request.query());
  const auto next = broker_.next(name, numberOr(parameters["generation"], 0), longPoll,
                                 [&] { return !connection.ended(); });
  if (const auto* script = std::get_if<DriverBroker::Script>(&next)) {
    return reply({{"id", script->id}, {"script", script->text}});
  }
  return empty(std::holds_alternative<DriverBroker::Superseded>(next) ? 410 : 204);
}

std::string TestControls::evaluate(const std::string& name, const Json& body,
                                   const Connection& connection) {
  const auto script = body.is_object() ? textMember(body, "script") : std::nullopt;
  if (!script) return failure(422, "There is no script.");
  const auto answer = broker_.evaluate(
      name, *script, std::chrono::milliseconds(numberMember(body, "timeout", defaultTimeout)),
      [&] { return !connection.ended(); });
  return answer ? reply(*answer) : failure(504, "No page answered in time.");
}

User TestControls::namedUser(const WireRequest& request) {
  const auto parameters = queryParameters(request.query());
  const auto named = parameters.find("account");
  return storage_.accounts.user(named == parameters.end() ? defaultAccount_ : named->second);
}

std::string TestControls::captures(const WireRequest& request) {
  const User user = namedUser(request);
  const auto keys = storage_.captures.idempotencyKeys(user.id);
  Json list = storage_.captures.list(user.id);
  for (Json& capture : list) {
    const auto key = keys.find(capture["id"].get<std::string>());
    capture["idempotencyKey"] = key == keys.end() ? Json() : Json(key->second);
  }
  return reply(list);
}

std::string TestControls::moveSessions(const WireRequest& request) {
  const User user = namedUser(request);
  storage_.accounts.moveSessions(user);
  return reply({{"id", user.id}, {"name", user.name}});
}

std::string TestControls::setCookies(const WireRequest& request) {
  const Json cookies = body(request);
  const bool texts =
      cookies.is_array() && std::all_of(cookies.begin(), cookies.end(), [](const Json& cookie) {
        return cookie.is_string() &&
               cookie.get<std::string>().find_first_of("\r\n") == std::string::npos;
      });
  if (!texts) return failure(422, "Send a JSON array of cookies, a line each.");
  HeaderList headers{{"Cache-Control", "no-store"}};
  for (const Json& cookie : cookies)
    headers.emplace_back("Set-Cookie", cookie.get<std::string>());
  return answerBytes(204, "", "", headers);
}

std::string TestControls::changeUser(const WireRequest& request) {
  const Json content = body(request);
  if (!content.is_object()) return failure(422, "Send a JSON object.");
  const User user = namedUser(request);
  if (request.path() == "/__test/notifications") {
    return reply(storage_.notifications.add(user.id, content), 201);
  }
  // Not checked by SettingsRules: a test may need values that the page cannot store.
  const bool texts = std::all_of(content.begin(), content.end(),
                                 [](const Json& value) { return value.is_string(); });
  if (!texts) return failure(422, "Every setting is a text.");
  return reply(storage_.settings.change(user.id, content));
}

}  // namespace navora::service
