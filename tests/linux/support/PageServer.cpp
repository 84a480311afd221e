#include "linux/support/PageServer.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include <httplib.h>

namespace navora {

class PageServer::Implementation {
 public:
  Implementation() {
    // Threads that wait for a further request on an old connection would be missing for new ones.
    server_.set_keep_alive_max_count(1);
    const auto answer = [this](const httplib::Request& request, httplib::Response& response) {
      serve(request, response);
    };
    server_.Get(".*", answer);
    server_.Post(".*", answer);
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // A server that does not run yet would miss its end.
    while (!server_.is_running())
      std::this_thread::yield();
  }

  ~Implementation() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    stop_.notify_all();
    server_.stop();
    thread_.join();
  }

  void set(const std::string& path, Answer answer) {
    const std::lock_guard lock(mutex_);
    answers_[path] = std::move(answer);
  }
  std::vector<Request> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }
  int port() const { return port_; }

 private:
  void serve(const httplib::Request& request, httplib::Response& response) {
    std::unique_lock lock(mutex_);
    requests_.push_back({request.method,
                         request.target,
                         {request.headers.begin(), request.headers.end()},
                         request.body});
    if (request.path == "/silent") {
      stop_.wait(lock, [this] { return stopping_; });
      return;
    }
    const auto found = answers_.find(request.path);
    if (found == answers_.end()) {
      response.status = 404;
      return;
    }
    response.status = found->second.status;
    if (!found->second.location.empty()) response.set_header("Location", found->second.location);
    response.set_content(found->second.body, "text/html; charset=utf-8");
  }

  mutable std::mutex mutex_;
  std::condition_variable stop_;
  bool stopping_ = false;
  std::map<std::string, Answer> answers_;
  std::vector<Request> requests_;
  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

std::string PageServer::Request::header(const std::string& name) const {
  const auto found = headers.find(name);
  return found == headers.end() ? std::string() : found->second;
}

PageServer::PageServer() : implementation_(std::make_unique<Implementation>()) {}

PageServer::~PageServer() = default;

void PageServer::setPage(const std::string& path, const std::string& html, int status) {
  implementation_->set(path, {status, html, {}});
}

void PageServer::setRedirect(const std::string& path, const std::string& location) {
  implementation_->set(path, {302, {}, location});
}

Url PageServer::origin() const {
  return *Url::parse("http://127.0.0.1:" + std::to_string(implementation_->port()));
}

Url PageServer::url(const std::string& target) const {
  return *Url::parse(origin().string() + target);
}

std::vector<PageServer::Request> PageServer::requests() const {
  return implementation_->requests();
}

std::size_t PageServer::requestCount(const std::string& target) const {
  return static_cast<std::size_t>(std::ranges::count(requests(), target, &Request::target));
}

}  // namespace navora
