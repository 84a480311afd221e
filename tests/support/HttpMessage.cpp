#include "tests/support/HttpMessage.h"

#include <sstream>

#include <strings.h>

namespace navora {

namespace {

// Reads header lines from the second line of a head to its blank line.
HttpHeaders readHeaders(const std::string& head) {
  HttpHeaders headers;
  const std::size_t end = head.find("\r\n\r\n");
  std::size_t position = head.find("\r\n");
  while (position < end) {
    const std::size_t next = head.find("\r\n", position + 2);
    const std::string line = head.substr(position + 2, next - position - 2);
    const std::size_t colon = line.find(':');
    const std::size_t value = line.find_first_not_of(' ', colon + 1);
    headers.emplace_back(line.substr(0, colon),
                         value == std::string::npos ? std::string() : line.substr(value));
    position = next;
  }
  return headers;
}

}  // namespace

std::optional<std::string> findHeader(const HttpHeaders& headers, std::string_view name) {
  for (const auto& [each, value] : headers) {
    if (each.size() == name.size() && strncasecmp(each.data(), name.data(), name.size()) == 0)
      return value;
  }
  return std::nullopt;
}

RecordedRequest RecordedRequest::fromHead(const std::string& head) {
  RecordedRequest request;
  std::istringstream(head) >> request.method >> request.target;
  request.headers = readHeaders(head);
  return request;
}

std::string describe(const std::vector<RecordedRequest>& requests) {
  std::string text;
  for (const RecordedRequest& request : requests)
    text += request.describe() + "\n";
  return text;
}

HttpReply HttpReply::parse(std::string bytes) {
  HttpReply reply;
  reply.bytes = std::move(bytes);
  const std::size_t headEnd = reply.bytes.find("\r\n\r\n");
  if (!reply.bytes.starts_with("HTTP/1.1 ") || headEnd == std::string::npos) return reply;
  reply.status = std::stoi(reply.bytes.substr(9, 3));
  reply.headers = readHeaders(reply.bytes);
  reply.body = reply.bytes.substr(headEnd + 4);
  return reply;
}

}  // namespace navora
