#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/Url.h"

namespace navora {

// A web server on a free loopback port that serves what a test gives it.
class PageServer {
 public:
  struct Request {
    std::string method;
    std::string target;  // path and query
    std::multimap<std::string, std::string> headers;
    std::string body;

    // Empty when there is none.
    std::string header(const std::string& name) const;
  };

  PageServer();
  ~PageServer();
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;

  // The path "/silent" accepts every request and never answers; everything unknown is 404.
  void setPage(const std::string& path, const std::string& html, int status = 200);
  void setRedirect(const std::string& path, const std::string& location);

  Url origin() const;
  Url url(const std::string& target) const;
  // So far, in the order of their arrival.
  std::vector<Request> requests() const;
  std::size_t requestCount(const std::string& target) const;

 private:
  struct Answer {
    int status;
    std::string body;
    std::string location;
  };
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace navora
