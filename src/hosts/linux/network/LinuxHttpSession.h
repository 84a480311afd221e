#pragma once

#include <memory>
#include <vector>

#include <libsoup/soup.h>

#include "hosts/linux/network/HttpTransfer.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/HttpSession.h"

namespace navora {

// Requests over libsoup. Proxies are those of the desktop, except for this machine itself.
class LinuxHttpSession final : public HttpSession {
 public:
  explicit LinuxHttpSession(const HttpSessionConfiguration& configuration);
  ~LinuxHttpSession() override;
  LinuxHttpSession(const LinuxHttpSession&) = delete;
  LinuxHttpSession& operator=(const LinuxHttpSession&) = delete;

  void send(const HttpRequest& request, Completion completion) override;
  // The same with an answer that is too long for the memory: the response has no body then. The
  // receiver must not destroy the session.
  void send(const HttpRequest& request, HttpReceiver receiver, Completion completion);

 private:
  void start(const std::shared_ptr<HttpTransfer>& transfer, const Url& url, Completion completion);
  SoupSession* sessionFor(const Url& url);

  const HttpSessionConfiguration configuration_;
  // Made when they are needed.
  GObjectPtr<SoupSession> direct_;
  GObjectPtr<SoupSession> proxied_;
  std::vector<std::shared_ptr<HttpTransfer>> transfers_;
};

}  // namespace navora
