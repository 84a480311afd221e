#include "service/testing/HttpMessage.h"

#include <algorithm>
#include <charconv>

#include "service/support/Text.h"

namespace navora::service {
namespace {

constexpr std::chrono::seconds patience(30);
constexpr std::size_t headLimit = 64 * 1024;
constexpr std::size_t bodyLimit = 16 * 1024 * 1024;
constexpr std::string_view headEnd = "\r\n\r\n";

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

std::optional<std::size_t> parseNumber(std::string_view text, int base) {
  std::size_t value = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || rest == text.data()) return std::nullopt;
  return value;
}

std::optional<WireRequest> parseHead(std::string_view head) {
  WireRequest request;
  std::size_t lineEnd = head.find("\r\n");
  const std::string_view first = head.substr(0, lineEnd);
  const std::size_t methodEnd = first.find(' ');
  const std::size_t targetEnd = first.rfind(' ');
  if (methodEnd == std::string_view::npos || methodEnd == targetEnd) return std::nullopt;
  if (!first.substr(targetEnd + 1).starts_with("HTTP/1.")) return std::nullopt;
  request.method = first.substr(0, methodEnd);
  request.target = first.substr(methodEnd + 1, targetEnd - methodEnd - 1);
  while (lineEnd != std::string_view::npos) {
    head.remove_prefix(lineEnd + 2);
    lineEnd = head.find("\r\n");
    const std::string_view line = head.substr(0, lineEnd);
    if (line.empty()) break;
    const std::size_t colon = line.find(':');
    if (colon == 0 || colon == std::string_view::npos) return std::nullopt;
    request.headers.emplace_back(line.substr(0, colon), trimmed(line.substr(colon + 1)));
  }
  return request;
}

// Consumes a buffer from its front and refills it from the connection.
class Reader {
 public:
  Reader(Connection& connection, std::string& buffer) : connection_(connection), buffer_(buffer) {}

  bool take(std::size_t size, std::string& target) {
    while (buffer_.size() < size) {
      if (!connection_.receive(buffer_, patience)) return false;
    }
    target.append(buffer_, 0, size);
    buffer_.erase(0, size);
    return true;
  }

  bool takeLine(std::string& line) {
    std::size_t end = std::string::npos;
    while ((end = buffer_.find("\r\n")) == std::string::npos) {
      if (buffer_.size() > headLimit || !connection_.receive(buffer_, patience)) return false;
    }
    line = buffer_.substr(0, end);
    buffer_.erase(0, end + 2);
    return true;
  }

 private:
  Connection& connection_;
  std::string& buffer_;
};

std::optional<ReadFailure> readChunks(Reader& reader, std::string& body) {
  while (true) {
    std::string line;
    if (!reader.takeLine(line)) return ReadFailure::closed;
    const auto size = parseNumber(line, 16);
    if (!size) return ReadFailure::malformed;
    if (*size > bodyLimit - body.size()) return ReadFailure::tooLarge;
    if (*size == 0) break;
    if (!reader.take(*size, body) || !reader.takeLine(line)) return ReadFailure::closed;
  }
  for (std::string trailer = "-"; !trailer.empty();) {
    if (!reader.takeLine(trailer)) return ReadFailure::closed;
  }
  return std::nullopt;
}

std::optional<ReadFailure> readBody(Connection& connection, std::string& buffer,
                                    WireRequest& request) {
  const bool chunked = equalIgnoringCase(request.header("Transfer-Encoding"), "chunked");
  const std::string length = request.header("Content-Length");
  if (!chunked && length.empty()) return std::nullopt;
  if (equalIgnoringCase(request.header("Expect"), "100-continue") &&
      !connection.send("HTTP/1.1 100 Continue\r\n\r\n")) {
    return ReadFailure::closed;
  }
  Reader reader(connection, buffer);
  if (chunked) return readChunks(reader, request.body);
  const auto size = parseNumber(length, 10);
  if (!size) return ReadFailure::malformed;
  if (*size > bodyLimit) return ReadFailure::tooLarge;
  if (!reader.take(*size, request.body)) return ReadFailure::closed;
  return std::nullopt;
}

const char* reasonPhrase(int status) {
  switch (status) {
    case 200:
      return "OK";
    case 202:
      return "Accepted";
    case 204:
      return "No Content";
    case 302:
      return "Found";
    case 400:
      return "Bad Request";
    case 401:
      return "Unauthorized";
    case 404:
      return "Not Found";
    case 409:
      return "Conflict";
    case 410:
      return "Gone";
    case 413:
      return "Payload Too Large";
    case 422:
      return "Unprocessable Entity";
    case 500:
      return "Internal Server Error";
    case 503:
      return "Service Unavailable";
    case 504:
      return "Gateway Timeout";
    default:
      return "Status";
  }
}

}  // namespace

std::string WireRequest::path() const {
  return target.substr(0, target.find('?'));
}

std::string WireRequest::query() const {
  const std::size_t mark = target.find('?');
  return mark == std::string::npos ? "" : target.substr(mark + 1);
}

std::string WireRequest::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (equalIgnoringCase(key, name)) return value;
  }
  return {};
}

std::variant<WireRequest, ReadFailure> readRequest(Connection& connection) {
  std::string buffer;
  std::size_t end = std::string::npos;
  while ((end = buffer.find(headEnd)) == std::string::npos) {
    if (buffer.size() > headLimit) return ReadFailure::tooLarge;
    if (!connection.receive(buffer, patience)) return ReadFailure::closed;
  }
  std::optional<WireRequest> request = parseHead(std::string_view(buffer).substr(0, end + 2));
  if (!request) return ReadFailure::malformed;
  buffer.erase(0, end + headEnd.size());
  if (const auto failure = readBody(connection, buffer, *request)) return *failure;
  return *std::move(request);
}

std::string requestBytes(const WireRequest& request) {
  std::string bytes = request.method + " " + request.target + " HTTP/1.1\r\n";
  for (const auto& [name, value] : request.headers) {
    // Hop-by-hop headers concern the client's connection, not the request.
    const bool own = equalIgnoringCase(name, "Connection") || equalIgnoringCase(name, "Expect") ||
                     equalIgnoringCase(name, "Transfer-Encoding") ||
                     equalIgnoringCase(name, "Content-Length");
    if (!own) bytes += name + ": " + value + "\r\n";
  }
  // The server waits for a body if a request with these methods has no length.
  const bool hasBody = !request.body.empty() || request.method == "POST" ||
                       request.method == "PUT" || request.method == "PATCH";
  if (hasBody) bytes += "Content-Length: " + std::to_string(request.body.size()) + "\r\n";
  return bytes + "Connection: close\r\n\r\n" + request.body;
}

std::string answerBytes(int status, const std::string& contentType, const std::string& body,
                        const HeaderList& headers) {
  std::string bytes = "HTTP/1.1 " + std::to_string(status) + " " + reasonPhrase(status) + "\r\n";
  for (const auto& [name, value] : headers)
    bytes += name + ": " + value + "\r\n";
  if (!contentType.empty()) bytes += "Content-Type: " + contentType + "\r\n";
  if (status != 204) bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return bytes + "Connection: close\r\n\r\n" + body;
}

std::optional<std::size_t> bodyOffset(std::string_view answer) {
  const std::size_t end = answer.find(headEnd);
  return end == std::string_view::npos ? std::nullopt : std::optional(end + headEnd.size());
}

}  // namespace navora::service
