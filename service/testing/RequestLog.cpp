#include "service/testing/RequestLog.h"

#include <utility>

#include "service/support/Encoding.h"
#include "service/support/Text.h"

namespace navora::service {
namespace {

// Header values are bytes; those that are not UTF-8 are reported as base64.
std::string shown(const std::string& bytes) {
  return isUtf8(bytes) ? bytes : "base64:" + base64(bytes);
}

}  // namespace

void RequestLog::record(const WireRequest& request) {
  Json headers = Json::array();
  for (const auto& [name, value] : request.headers) {
    headers.push_back(Json::array({shown(name), shown(value)}));
  }
  const bool text = isUtf8(request.body);
  Json entry{{"method", request.method},
             {"target", shown(request.target)},
             {"path", shown(request.path())},
             {"headers", std::move(headers)},
             {"body", text ? request.body : base64(request.body)},
             {"bodyEncoding", text ? "utf-8" : "base64"}};
  {
    const std::lock_guard lock(mutex_);
    entry["sequence"] = ++sequence_;
    requests_.push_back(std::move(entry));
  }
  changed_.notify_all();
}

void RequestLog::clear() {
  const std::lock_guard lock(mutex_);
  requests_.clear();
}

Json RequestLog::matching(const Filter& filter) const {
  Json found = Json::array();
  for (const Json& request : requests_) {
    if ((filter.method.empty() || request["method"] == filter.method) &&
        (filter.path.empty() || request["path"] == filter.path)) {
      found.push_back(request);
    }
  }
  return found;
}

Json RequestLog::read(const Filter& filter, std::size_t count, std::chrono::milliseconds timeout,
                      const std::function<bool()>& waiting) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  std::unique_lock lock(mutex_);
  Json found = matching(filter);
  while (found.size() < count && std::chrono::steady_clock::now() < end && waiting()) {
    changed_.wait_for(lock, std::chrono::milliseconds(50));
    found = matching(filter);
  }
  return found;
}

}  // namespace navora::service
