#include "end_to_end/driver/ForeignServer.h"

#include <httplib.h>

#include "end_to_end/driver/Wait.h"

namespace navora::driver {

namespace {

// A request is recorded and answered on one thread of the server, its body read in between.
thread_local std::size_t sequenceOnThisThread = 0;

}  // namespace

ForeignServer::ForeignServer() : server_(std::make_unique<httplib::Server>()) {
  // One request per connection: a kept connection would occupy a thread of the server.
  server_->set_keep_alive_max_count(1);
  server_->set_pre_routing_handler([this](const auto& request, auto&) {
    record(request);
    return httplib::Server::HandlerResponse::Unhandled;
  });
  const auto handler = [this](const auto& request, auto& response) { answer(request, response); };
  const std::string everything = "[\\s\\S]*";
  server_->Get(everything, handler);
  server_->Post(everything, handler);
  server_->Put(everything, handler);
  server_->Patch(everything, handler);
  server_->Delete(everything, handler);
  server_->Options(everything, handler);
  port_ = server_->bind_to_any_port("127.0.0.1");
  if (port_ <= 0) throw DriverError("No port for the foreign server");
  thread_ = std::thread([this] { server_->listen_after_bind(); });
  waitUntil([this] { return server_->is_running(); }, "the foreign server listens");
}

ForeignServer::~ForeignServer() {
  server_->stop();
  thread_.join();
}

void ForeignServer::serve(const std::string& path, Page page) {
  const std::lock_guard lock(mutex_);
  pages_[path] = std::move(page);
}

// Comes before the body has been read: even a request that breaks off is in the log.
void ForeignServer::record(const httplib::Request& request) {
  RecordedRequest entry;
  entry.method = request.method;
  entry.target = request.target;
  for (const auto& [name, value] : request.headers) {
    // The library adds these about the connection; they were not sent.
    if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR" &&
        name != "LOCAL_PORT") {
      entry.headers.emplace_back(name, value);
    }
  }
  const std::lock_guard lock(mutex_);
  entry.sequence = ++sequence_;
  sequenceOnThisThread = entry.sequence;
  requests_.push_back(std::move(entry));
}

void ForeignServer::answer(const httplib::Request& request, httplib::Response& response) {
  const std::lock_guard lock(mutex_);
  for (RecordedRequest& entry : requests_) {
    if (entry.sequence == sequenceOnThisThread) entry.body = request.body;
  }
  const auto page = pages_.find(request.path);
  if (page == pages_.end()) {
    response.set_content("<!doctype html><title>Foreign</title><p>A foreign page.",
                         "text/html; charset=utf-8");
    return;
  }
  response.status = page->second.status;
  for (const auto& [name, value] : page->second.headers)
    response.set_header(name, value);
  response.set_content(page->second.body, page->second.contentType);
}

std::vector<RecordedRequest> ForeignServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<RecordedRequest> ForeignServer::requests(const std::string& path) const {
  std::vector<RecordedRequest> found = requests();
  std::erase_if(found, [&](const RecordedRequest& request) { return request.path() != path; });
  return found;
}

void ForeignServer::clearRequests() {
  const std::lock_guard lock(mutex_);
  requests_.clear();
}

RecordedRequest ForeignServer::waitForRequest(const std::string& path) const {
  waitUntil([&] { return !requests(path).empty(); },
            "the foreign server has received a request for " + path, defaultTimeout(),
            [this] { return describe(requests()); });
  return requests(path).front();
}

}  // namespace navora::driver
