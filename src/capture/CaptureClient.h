#pragma once

#include <memory>
#include <string>

#include "capture/CaptureError.h"
#include "origin/ServiceClient.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Json.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// A note being sent. Every request for it repeats the same body under the same idempotency key, so
// that the service stores it once.
struct CaptureAttempt {
  std::string raw;
  std::string key;
  // The id of the user who was signed in when the note was first sent.
  std::string account;
  std::string body;
  std::string flowId;

  bool operator==(const CaptureAttempt&) const = default;
};

// The capture's requests to the service, sent as the user who is signed in to the web view.
class CaptureClient {
 public:
  struct Reply {
    int status = 0;
    // A JSON object.
    Json body;
  };
  // Sent with every request: the ids of this run of the application and of the note.
  struct Trace {
    std::string sessionId;
    std::string flowId;
  };

  // The queue and the system must outlive the client.
  CaptureClient(MainQueue& mainQueue, const System& system,
                ServiceClient::MakeHttpSession makeHttpSession, std::weak_ptr<WebView> webView,
                Url origin);

  // Returns the value of the "Cookie" header, or the error `login` if no user is signed
  // in, or `network` if the web view does not answer.
  Task<Expected<std::string, CaptureError>> cookieHeader();

  Task<Expected<Reply, CaptureError>> get(std::string path, std::string cookie, Trace trace);
  Task<Expected<Reply, CaptureError>> post(std::string path, std::string cookie,
                                           std::string sessionId, CaptureAttempt attempt);
  // Posts a batch of telemetry events; the response and any failure are ignored.
  Task<> postTelemetry(std::string cookie, std::string body);

 private:
  HttpRequest request(const std::string& path, const std::string& cookie, const Trace& trace) const;
  Task<Expected<Reply, CaptureError>> send(HttpRequest request);

  ServiceClient service_;
};

}  // namespace navora
