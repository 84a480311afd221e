#include "testing/TestFront.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace navora::service {
namespace {

constexpr std::chrono::seconds serverPatience(30);

/// Carries out one fault on the client's connection; `properAnswer` makes the service process the
/// request.
struct FaultPerformer {
  Connection& connection;
  const FaultRules& rules;
  const WireRequest& request;
  std::function<std::optional<std::string>()> properAnswer;

  void operator()(const AnswerFault& fault) const {
    if (fault.processed) properAnswer();
    const bool headOnly = request.method == "HEAD";
    connection.send(
        answerBytes(fault.status, fault.contentType, headOnly ? "" : fault.body, fault.headers));
  }

  void operator()(const DelayFault& fault) const {
    if (!connection.wait(fault.duration)) return;
    if (const auto answer = properAnswer()) connection.send(*answer);
  }

  void operator()(const HangFault&) const {
    const auto generation = rules.generation();
    while (rules.generation() == generation && connection.wait(std::chrono::milliseconds(20))) {
    }
  }

  void operator()(const DropFault& fault) const {
    if (fault.moment == DropFault::Moment::before) return;
    const auto answer = properAnswer();
    if (!answer || fault.moment == DropFault::Moment::after) return;
    const std::size_t size = std::min(answer->size(), bodyOffset(*answer) + fault.bytes);
    connection.send(std::string_view(*answer).substr(0, size));
  }

  void operator()(const OversizeFault& fault) const {
    if (fault.processed) properAnswer();
    const std::string before = R"({"padding":")";
    const std::string after = R"("})";
    std::string body = before;
    body.append(fault.bytes - std::min(fault.bytes, before.size() + after.size()), 'x');
    body += after;
    body.resize(fault.bytes, ' ');
    connection.send(answerBytes(200, "application/json", body));
  }

  void operator()(const GarbageFault&) const {
    connection.send(std::string_view("\x16\x03\x01\x00 this is no answer \xFF\xFE\x00\r\n", 27));
  }

  void operator()(const SlowFault& fault) const {
    const auto answer = properAnswer();
    if (!answer) return;
    for (std::size_t position = 0; position < answer->size(); position += fault.bytes) {
      if (position > 0 && !connection.wait(fault.interval)) return;
      if (!connection.send(std::string_view(*answer).substr(position, fault.bytes))) return;
    }
  }
};

}  // namespace

TestFront::TestFront(Listener listener, int serverPort, TestControls& controls, TestPages pages)
    : listener_(std::move(listener)),
      serverPort_(serverPort),
      controls_(controls),
      pages_(std::move(pages)),
      thread_([this] { acceptConnections(); }) {}

TestFront::~TestFront() {
  stop_.raise();
  thread_.join();
  for (Worker& worker : workers_)
    worker.thread.join();
}

void TestFront::acceptConnections() {
  while (auto connection = listener_.accept(stop_)) {
    joinFinished();
    Worker& worker = workers_.emplace_back();
    worker.thread = std::thread([this, &worker, client = *std::move(connection)]() mutable {
      serve(std::move(client));
      worker.done = true;
    });
  }
}

void TestFront::joinFinished() {
  workers_.remove_if([](Worker& worker) {
    if (!worker.done) return false;
    worker.thread.join();
    return true;
  });
}

void TestFront::serve(Connection connection) {
  auto read = readRequest(connection);
  if (const auto* failure = std::get_if<ReadFailure>(&read)) {
    if (*failure == ReadFailure::closed) return;
    connection.send(answerBytes(*failure == ReadFailure::tooLarge ? 413 : 400, "text/plain", ""));
    connection.finish();
    return;
  }
  const WireRequest request = std::get<WireRequest>(std::move(read));
  const std::string path = request.path();
  if (path.starts_with("/__test/") && !path.starts_with(TestPages::prefix)) {
    connection.send(controls_.answer(request, connection));
    return;
  }
  controls_.log().record(request);
  if (const auto fault = controls_.faults().take(request.method, path)) {
    misbehave(*fault, request, connection);
  } else if (const auto answer = properAnswer(request)) {
    connection.send(*answer);
  }
}

void TestFront::misbehave(const Fault& fault, const WireRequest& request, Connection& connection) {
  std::visit(FaultPerformer{connection, controls_.faults(), request,
                            [&] { return properAnswer(request); }},
             fault);
}

std::optional<std::string> TestFront::properAnswer(const WireRequest& request) {
  if (request.path().starts_with(TestPages::prefix)) return pages_.answer(request);
  auto server = Connection::open(serverPort_, stop_);
  if (!server || !server->send(requestBytes(request))) return std::nullopt;
  std::string answer;
  while (server->receive(answer, serverPatience)) {
  }
  return answer.empty() ? std::nullopt : std::optional(std::move(answer));
}

}  // namespace navora::service
