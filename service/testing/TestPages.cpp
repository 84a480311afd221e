#include "service/testing/TestPages.h"

#include <optional>
#include <string_view>

#include "service/support/Encoding.h"
#include "service/support/Files.h"

namespace navora::service {

std::string TestPages::answer(const WireRequest& request) const {
  const std::string name = percentDecoded(request.path().substr(std::string_view(prefix).size()));
  std::optional<std::string> content;
  if (!directory_.empty() && isPlainRelativePath(name)) content = readFile(directory_ / name);
  if (!content) return answerBytes(404, "text/plain", "There is no such test page.\n");
  const std::string type = mediaType(name);
  if (type.starts_with("text/html")) {
    content = filledTemplate(*std::move(content), queryParameters(request.query()));
  }
  return answerBytes(200, type, request.method == "HEAD" ? "" : *content,
                     {{"Cache-Control", "no-store"}});
}

}  // namespace navora::service
