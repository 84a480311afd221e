#include "hosts/linux/network/LinuxHttpSession.h"

#include <string>
#include <utility>

namespace navora {
namespace {

GObjectPtr<SoupSession> makeSession() {
  // A session has no cookie jar and no cache unless they are added as features.
  auto session = GObjectPtr<SoupSession>::adopt(soup_session_new());
  // Delivers 401 and 407 as responses like any other.
  soup_session_remove_feature_by_type(session.get(), SOUP_TYPE_AUTH_MANAGER);
  // HttpTransfer has its own timers.
  soup_session_set_timeout(session.get(), 0);
  return session;
}

bool isLoopback(const std::string& name) {
  const std::string host = GCharPtr(g_ascii_strdown(name.c_str(), -1)).get();
  if (host == "localhost" || host.ends_with(".localhost")) return true;
  const auto address =
      GObjectPtr<GInetAddress>::adopt(g_inet_address_new_from_string(host.c_str()));
  return address && g_inet_address_get_is_loopback(address.get()) != FALSE;
}

}  // namespace

LinuxHttpSession::LinuxHttpSession(const HttpSessionConfiguration& configuration,
                                   MainQueue& mainQueue)
    : configuration_(configuration), mainQueue_(mainQueue) {}

LinuxHttpSession::~LinuxHttpSession() {
  // Before the sessions are aborted, so that aborting calls no completion.
  transfers_.clear();
  for (const auto& session : {direct_, proxied_}) {
    if (session) soup_session_abort(session.get());
  }
}

SoupSession* LinuxHttpSession::sessionFor(const Url& url) {
  if (isLoopback(url.host().value_or(""))) {
    if (!direct_) {
      direct_ = makeSession();
      soup_session_set_proxy_resolver(direct_.get(), nullptr);
    }
    return direct_.get();
  }
  if (!proxied_) proxied_ = makeSession();
  return proxied_.get();
}

HttpSession::RequestId LinuxHttpSession::send(const HttpRequest& request, Completion completion) {
  return start(std::make_shared<HttpTransfer>(request, configuration_, mainQueue_), request.url,
               std::move(completion));
}

HttpSession::RequestId LinuxHttpSession::send(const HttpRequest& request, HttpReceiver receiver,
                                              Completion completion) {
  return start(
      std::make_shared<HttpTransfer>(request, configuration_, mainQueue_, std::move(receiver)),
      request.url, std::move(completion));
}

HttpSession::RequestId LinuxHttpSession::start(const std::shared_ptr<HttpTransfer>& transfer,
                                               const Url& url, Completion completion) {
  const RequestId id = ++lastRequest_;
  transfers_.emplace(id, transfer);
  const auto onEnd = [this, id, completion = std::move(completion)](Result result) {
    transfers_.erase(id);
    // Last, because it may destroy this session.
    completion(std::move(result));
  };
  transfer->start(sessionFor(url), onEnd);
  return id;
}

}  // namespace navora
