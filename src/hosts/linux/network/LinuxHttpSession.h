#pragma once

#include <map>
#include <memory>

#include <libsoup/soup.h>

#include "hosts/linux/network/HttpTransfer.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"

namespace navora {

// Sends requests with libsoup, through the desktop's proxies except to loopback addresses.
class LinuxHttpSession final : public HttpSession {
 public:
  // `mainQueue` must outlive the session.
  LinuxHttpSession(const HttpSessionConfiguration& configuration, MainQueue& mainQueue);
  ~LinuxHttpSession() override;
  LinuxHttpSession(const LinuxHttpSession&) = delete;
  LinuxHttpSession& operator=(const LinuxHttpSession&) = delete;

  RequestId send(const HttpRequest& request, Completion completion) override;
  // Hands the body to `receiver` instead of keeping it: the response of `completion` has none. The
  // receiver must not destroy the session or cancel the request.
  RequestId send(const HttpRequest& request, HttpReceiver receiver, Completion completion);
  void cancel(RequestId request) override { transfers_.erase(request); }

 private:
  RequestId start(const std::shared_ptr<HttpTransfer>& transfer, const Url& url,
                  Completion completion);
  SoupSession* sessionFor(const Url& url);

  const HttpSessionConfiguration configuration_;
  MainQueue& mainQueue_;
  // Null until first used.
  GObjectPtr<SoupSession> direct_;
  GObjectPtr<SoupSession> proxied_;
  RequestId lastRequest_ = 0;
  std::map<RequestId, std::shared_ptr<HttpTransfer>> transfers_;
};

}  // namespace navora
