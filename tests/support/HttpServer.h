#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/HttpMessage.h"
#include "tests/support/Tcp.h"

namespace navora {

// A web server on a free port of 127.0.0.1 that serves what a test gives it. It records each
// request before it answers, one request to a connection. May be used while requests arrive.
class HttpServer {
 public:
  struct Page {
    std::string body;
    std::string contentType = "text/html; charset=utf-8";
    int status = 200;
    HttpHeaders headers = {};
    // Sent instead of the status line and the headers above; each line ends with "\r\n".
    std::string head = {};
  };

  // `fallback` answers requests for paths without a page; 404 by default.
  HttpServer() : HttpServer(Page{.body = {}, .status = 404}) {}
  explicit HttpServer(Page fallback);

  int port() const { return server_.port(); }
  // Returns "http://127.0.0.1:PORT".
  std::string origin() const { return server_.url(""); }
  // `target` begins with "/".
  std::string url(const std::string& target) const { return server_.url(target); }

  // Answers every method at this path from now on.
  void serve(const std::string& path, Page page);
  void serveHtml(const std::string& path, const std::string& html, int status = 200);
  // Accepts requests for this path and never answers them.
  void leaveUnanswered(const std::string& path);

  // Returns the requests in the order of their arrival, those for one path if it is given. A
  // request that was cut off is among them.
  std::vector<RecordedRequest> requests() const;
  std::vector<RecordedRequest> requests(const std::string& path) const;
  void clearRequests();
  // Waits for a request for `path` and returns the first.
  RecordedRequest waitForRequest(const std::string& path) const;

 private:
  void handle(const TcpConnection& connection);
  std::size_t record(RecordedRequest request);
  // Returns the bytes of the reply, or an empty string if the request stays unanswered.
  std::string replyTo(const RecordedRequest& request) const;

  const Page fallback_;
  mutable std::mutex mutex_;
  std::size_t sequence_ = 0;
  std::vector<RecordedRequest> requests_;
  std::map<std::string, Page> pages_;
  std::set<std::string> unanswered_;
  // Last: destroyed first, it ends the threads that use the other members.
  TcpServer server_;
};

}  // namespace navora
