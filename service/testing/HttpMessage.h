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

/// A request as it came over the wire.
struct WireRequest {
  std::string method;
  std::string target;  ///< Path and query, as written.
  HeaderList headers;  ///< In the order received, names as written.
  std::string body;    ///< With a chunked transfer already undone.

  std::string path() const;
  std::string query() const;
  /// The first value of a header, whatever the case of its name; empty when there is none.
  std::string header(std::string_view name) const;
};

/// Why no request could be read.
enum class ReadFailure { closed, malformed, tooLarge };

/// Reads one request with its whole body. A client that waits for "100 Continue" gets it.
std::variant<WireRequest, ReadFailure> readRequest(Connection& connection);

/// The bytes of a request that asks the server to close the connection after its answer.
std::string requestBytes(const WireRequest& request);

/// The bytes of a complete answer after which the connection is closed.
std::string answerBytes(int status, const std::string& contentType, const std::string& body,
                        const HeaderList& headers = {});

/// Where the body of an answer begins; nothing while its head is not complete.
std::optional<std::size_t> bodyOffset(std::string_view answer);

}  // namespace navora::service
