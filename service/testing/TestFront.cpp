#include "service/testing/TestFront.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace navora::service {
namespace {

constexpr std::chrono::seconds serverPatience(30);

// Forwards the head of a reply and the first bytes of its body.
class Truncation {
 public:
  Truncation(Connection& connection, std::size_t bytes) : connection_(connection), left_(bytes) {}

  bool operator()(std::string_view piece) {
    if (inBody_) return pass(piece);
    beginning_ += piece;
    const auto offset = bodyOffset(beginning_);
    if (!offset) return true;
    inBody_ = true;
    const std::string_view all = beginning_;
    return connection_.send(all.substr(0, *offset)) && pass(all.substr(*offset));
  }

 private:
  bool pass(std::string_view body) {
    const std::string_view part = body.substr(0, left_);
    left_ -= part.size();
    return connection_.send(part) && left_ > 0;
  }

  Connection& connection_;
  std::size_t left_;
  std::string beginning_;
  bool inBody_ = false;
};

// Forwards a reply in pieces of one size, with a pause between them.
class SlowMotion {
 public:
  SlowMotion(Connection& connection, const SlowFault& fault)
      : connection_(connection), fault_(fault) {}

  bool operator()(std::string_view piece) {
    waiting_ += piece;
    std::size_t sent = 0;
    for (; waiting_.size() - sent >= fault_.bytes; sent += fault_.bytes) {
      if (!send(std::string_view(waiting_).substr(sent, fault_.bytes))) return false;
    }
    waiting_.erase(0, sent);
    return true;
  }

  void finish() {
    if (!waiting_.empty()) send(waiting_);
  }

 private:
  bool send(std::string_view piece) {
    if (!first_ && !connection_.wait(fault_.interval)) return false;
    first_ = false;
    return connection_.send(piece);
  }

  Connection& connection_;
  const SlowFault& fault_;
  std::string waiting_;
  bool first_ = true;
};

// Carries out one fault on the client's connection; `properAnswer` has the service process the
// request.
struct FaultPerformer {
  Connection& connection;
  const FaultRules& rules;
  const WireRequest& request;
  std::function<void(const TestFront::AnswerSink&)> properAnswer;

  // Has the service process the request and discards the reply.
  void process() const {
    properAnswer([](std::string_view) { return true; });
  }

  void operator()(const AnswerFault& fault) const {
    if (fault.processed) process();
    const bool headOnly = request.method == "HEAD";
    connection.send(
        answerBytes(fault.status, fault.contentType, headOnly ? "" : fault.body, fault.headers));
  }

  void operator()(const DelayFault& fault) const {
    if (!connection.wait(fault.duration)) return;
    properAnswer([this](std::string_view piece) { return connection.send(piece); });
  }

  void operator()(const HangFault& fault) const {
    if (fault.processed) process();
    const auto generation = rules.generation();
    while (rules.generation() == generation && connection.wait(std::chrono::milliseconds(20))) {
    }
  }

  void operator()(const DropFault& fault) const {
    if (fault.moment == DropFault::Moment::before) return;
    if (fault.moment == DropFault::Moment::after) {
      process();
      return;
    }
    Truncation truncation(connection, fault.bytes);
    properAnswer(std::ref(truncation));
  }

  void operator()(const OversizeFault& fault) const {
    if (fault.processed) process();
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
    SlowMotion motion(connection, fault);
    properAnswer(std::ref(motion));
    motion.finish();
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
  } else {
    properAnswer(request, [&](std::string_view piece) { return connection.send(piece); });
  }
}

void TestFront::misbehave(const Fault& fault, const WireRequest& request, Connection& connection) {
  std::visit(FaultPerformer{connection, controls_.faults(), request,
                            [&](const AnswerSink& sink) { properAnswer(request, sink); }},
             fault);
}

void TestFront::properAnswer(const WireRequest& request, const AnswerSink& sink) {
  if (request.path().starts_with(TestPages::prefix)) {
    sink(pages_.answer(request));
    return;
  }
  auto server = Connection::open(serverPort_, stop_);
  if (!server || !server->send(requestBytes(request))) return;
  // A reply can be a large archive: it is never held in memory as a whole.
  for (std::string piece; server->receive(piece, serverPatience); piece.clear()) {
    if (!sink(piece)) return;
  }
}

}  // namespace navora::service
