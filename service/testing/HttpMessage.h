#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "service/testing/Socket.h"

namespace navora::service {

using HeaderList = std::vector<std::pair<std::string, std::string>>;

// A request as received.
struct WireRequest {
  std::string method;
  std::string target;  // Path and query, as written.
  HeaderList headers;  // In the order received, names as written.
  std::string body;    // With the chunked transfer coding removed.

  std::string path() const;
  std::string query() const;
  // Returns the first value of a header, or an empty string; the case of the name is ignored.
  std::string header(std::string_view name) const;
};

// The reason why no request could be read.
enum class ReadFailure { closed, malformed, tooLarge };

// Reads one request with its body, and sends "100 Continue" to a client that expects it.
std::variant<WireRequest, ReadFailure> readRequest(Connection& connection);

// Serialises a request that asks the server to close the connection after its reply.
std::string requestBytes(const WireRequest& request);

// Serialises a complete reply after which the connection is closed.
std::string answerBytes(int status, const std::string& contentType, const std::string& body,
                        const HeaderList& headers = {});

// Returns the offset of a reply's body, or nullopt while its head is incomplete.
std::optional<std::size_t> bodyOffset(std::string_view answer);

}  // namespace navora::service
