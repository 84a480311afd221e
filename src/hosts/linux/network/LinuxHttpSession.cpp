#include "hosts/linux/network/LinuxHttpSession.h"

#include <string>
#include <utility>

namespace navora {
namespace {

GObjectPtr<SoupSession> makeSession() {
  // Neither cookies nor a cache are part of a session unless they are added.
  auto session = GObjectPtr<SoupSession>::adopt(soup_session_new());
  // An answer that asks for a password is the response, like every other one.
  soup_session_remove_feature_by_type(session.get(), SOUP_TYPE_AUTH_MANAGER);
  // The transfers keep the time.
  soup_session_set_timeout(session.get(), 0);
  return session;
}

bool isThisMachine(const std::string& name) {
  const std::string host = GCharPtr(g_ascii_strdown(name.c_str(), -1)).get();
  if (host == "localhost" || host.ends_with(".localhost")) return true;
  const auto address =
      GObjectPtr<GInetAddress>::adopt(g_inet_address_new_from_string(host.c_str()));
  return address && g_inet_address_get_is_loopback(address.get()) != FALSE;
}

}  // namespace

LinuxHttpSession::LinuxHttpSession(const HttpSessionConfiguration& configuration)
    : configuration_(configuration) {}

LinuxHttpSession::~LinuxHttpSession() {
  // First of all, so that nothing of them calls back while the connections are closed.
  transfers_.clear();
  for (const auto& session : {direct_, proxied_}) {
    if (session) soup_session_abort(session.get());
  }
}

SoupSession* LinuxHttpSession::sessionFor(const Url& url) {
  if (isThisMachine(url.host().value_or(""))) {
    if (!direct_) {
      direct_ = makeSession();
      soup_session_set_proxy_resolver(direct_.get(), nullptr);
    }
    return direct_.get();
  }
  if (!proxied_) proxied_ = makeSession();
  return proxied_.get();
}

void LinuxHttpSession::send(const HttpRequest& request, Completion completion) {
  start(std::make_shared<HttpTransfer>(request, configuration_), request.url,
        std::move(completion));
}

void LinuxHttpSession::send(const HttpRequest& request, HttpReceiver receiver,
                            Completion completion) {
  start(std::make_shared<HttpTransfer>(request, configuration_, std::move(receiver)), request.url,
        std::move(completion));
}

void LinuxHttpSession::start(const std::shared_ptr<HttpTransfer>& transfer, const Url& url,
                             Completion completion) {
  transfers_.push_back(transfer);
  const auto onEnd = [this, ended = transfer.get(),
                      completion = std::move(completion)](Result result) {
    std::erase_if(transfers_, [&](const auto& each) { return each.get() == ended; });
    // It may destroy this session, so it is the last that happens here.
    completion(std::move(result));
  };
  transfer->start(sessionFor(url), onEnd);
}

}  // namespace navora
