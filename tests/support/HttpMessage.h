#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace navora {

// Header fields in the order in which they were sent.
using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

// Returns the value of the first header of that name, compared without regard to case.
std::optional<std::string> findHeader(const HttpHeaders& headers, std::string_view name);

// An HTTP request as a server received it.
struct RecordedRequest {
  // Parses a request line and headers; members that are missing from it stay empty.
  static RecordedRequest fromHead(const std::string& head);

  std::size_t sequence = 0;  // increases by one with every request to a server
  std::string method;
  std::string target;  // path and query as sent
  HttpHeaders headers;
  std::string body;

  std::string path() const { return target.substr(0, target.find('?')); }
  std::optional<std::string> header(std::string_view name) const {
    return findHeader(headers, name);
  }
  // Returns one line, for messages.
  std::string describe() const { return method + " " + target; }
};

// Returns a line for each request.
std::string describe(const std::vector<RecordedRequest>& requests);

// The reply of a server.
struct HttpReply {
  // Parses everything that a server sent until it closed the connection.
  static HttpReply parse(std::string bytes);

  std::string bytes;  // as received
  int status = 0;     // 0 if the bytes are not an HTTP/1.1 reply
  HttpHeaders headers;
  std::string body;

  // Returns the first header of that name, or an empty string.
  std::string header(std::string_view name) const { return findHeader(headers, name).value_or(""); }
  // Returns the parsed body, or a discarded value if it is not JSON.
  nlohmann::json json() const { return nlohmann::json::parse(body, nullptr, false); }
};

}  // namespace navora
