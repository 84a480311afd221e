#include "tests/support/HttpServer.h"

#include <algorithm>
#include <utility>

#include "tests/support/Wait.h"

namespace navora {

namespace {

std::string headOf(const HttpServer::Page& page) {
  std::string head = "HTTP/1.1 " + std::to_string(page.status) +
                     " Reason\r\nContent-Type: " + page.contentType +
                     "\r\nContent-Length: " + std::to_string(page.body.size()) + "\r\n";
  for (const auto& [name, value] : page.headers)
    head += name + ": " + value + "\r\n";
  return head;
}

}  // namespace

HttpServer::HttpServer(Page fallback)
    : fallback_(std::move(fallback)),
      server_([this](TcpConnection& connection) { handle(connection); }) {}

void HttpServer::serve(const std::string& path, Page page) {
  const std::lock_guard lock(mutex_);
  pages_[path] = std::move(page);
}

void HttpServer::serveHtml(const std::string& path, const std::string& html, int status) {
  serve(path, {.body = html, .status = status});
}

void HttpServer::leaveUnanswered(const std::string& path) {
  const std::lock_guard lock(mutex_);
  unanswered_.insert(path);
}

void HttpServer::handle(const TcpConnection& connection) {
  const std::string head = connection.readHead();
  if (head.empty()) return;
  RecordedRequest request = RecordedRequest::fromHead(head);
  // Recorded before the body is read, so that a request that is cut off leaves a trace.
  request.sequence = record(request);
  request.body = connection.readBody(head);
  record(request);
  const std::string reply = replyTo(request);
  if (reply.empty()) {
    connection.discardAll();
  } else {
    connection.send(reply);
  }
}

std::size_t HttpServer::record(RecordedRequest request) {
  const std::lock_guard lock(mutex_);
  if (request.sequence == 0) {
    request.sequence = ++sequence_;
    requests_.push_back(std::move(request));
    return sequence_;
  }
  const std::size_t sequence = request.sequence;
  const auto found = std::ranges::find(requests_, sequence, &RecordedRequest::sequence);
  if (found != requests_.end()) *found = std::move(request);
  return sequence;
}

std::string HttpServer::replyTo(const RecordedRequest& request) const {
  const std::lock_guard lock(mutex_);
  if (unanswered_.contains(request.path())) return {};
  const auto found = pages_.find(request.path());
  const Page& page = found == pages_.end() ? fallback_ : found->second;
  const std::string reply =
      (page.head.empty() ? headOf(page) : page.head) + "Connection: close\r\n\r\n";
  return request.method == "HEAD" ? reply : reply + page.body;
}

std::vector<RecordedRequest> HttpServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<RecordedRequest> HttpServer::requests(const std::string& path) const {
  std::vector<RecordedRequest> found = requests();
  std::erase_if(found, [&](const RecordedRequest& request) { return request.path() != path; });
  return found;
}

void HttpServer::clearRequests() {
  const std::lock_guard lock(mutex_);
  requests_.clear();
}

RecordedRequest HttpServer::waitForRequest(const std::string& path) const {
  waitUntil([&] { return !requests(path).empty(); },
            "the server has received a request for " + path, defaultTimeout(),
            [this] { return describe(requests()); });
  return requests(path).front();
}

}  // namespace navora
