#pragma once

#include <memory>
#include <string>

#include "capture/CaptureAttempt.h"
#include "capture/CaptureError.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Json.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Speaks to the service as the user who is signed in to the web view.
class CaptureClient {
 public:
  struct Reply {
    int status = 0;
    // An object.
    Json body;
  };
  // What a request says of the run of the application and of the note that it belongs to.
  struct Trace {
    std::string sessionId;
    std::string flowId;
  };

  CaptureClient(Platform& platform, std::weak_ptr<WebView> webView, Url origin);

  // The "Cookie" header; `login` without a session.
  Task<Expected<std::string, CaptureError>> cookieHeader();

  Task<Expected<Reply, CaptureError>> get(std::string path, std::string cookie, Trace trace);
  Task<Expected<Reply, CaptureError>> post(std::string path, std::string cookie,
                                           std::string sessionId, CaptureAttempt attempt);
  // Whatever becomes of it.
  Task<> postTelemetry(std::string cookie, std::string body);

 private:
  HttpSession& session();
  Url resolved(const std::string& path) const;
  HttpRequest request(const std::string& path, const std::string& cookie, const Trace& trace) const;
  Task<HttpSession::Result> send(HttpRequest request);
  Expected<Reply, CaptureError> read(const HttpSession::Result& result) const;

  Platform& platform_;
  std::weak_ptr<WebView> webView_;
  const Url origin_;
  std::unique_ptr<HttpSession> session_;
};

}  // namespace navora
