#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "end_to_end/driver/RecordedRequest.h"

namespace httplib {
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace navora::driver {

// A server of another origin on this machine: it writes down every request before it answers, so
// that a test can tell what left the application and with which cookies.
class ForeignServer {
 public:
  struct Page {
    std::string body;
    std::string contentType = "text/html; charset=utf-8";
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers = {};
  };

  ForeignServer();
  ~ForeignServer();
  ForeignServer(const ForeignServer&) = delete;
  ForeignServer& operator=(const ForeignServer&) = delete;

  // "http://127.0.0.1:PORT"
  std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::string url(const std::string& path) const { return origin() + path; }
  int port() const { return port_; }

  // The answer to every method at this path; whatever has no page gets a short one with status 200.
  void serve(const std::string& path, Page page);

  std::vector<RecordedRequest> requests() const;
  std::vector<RecordedRequest> requests(const std::string& path) const;
  void clearRequests();
  RecordedRequest waitForRequest(const std::string& path) const;

 private:
  void record(const httplib::Request& request);
  void answer(const httplib::Request& request, httplib::Response& response);

  std::unique_ptr<httplib::Server> server_;
  int port_ = 0;
  std::thread thread_;
  mutable std::mutex mutex_;
  std::vector<RecordedRequest> requests_;
  std::size_t sequence_ = 0;
  std::map<std::string, Page> pages_;
};

}  // namespace navora::driver
