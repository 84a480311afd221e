#pragma once

#include <memory>
#include <optional>
#include <string>

#include "capture/CaptureAttempt.h"
#include "capture/CaptureClient.h"
#include "capture/CaptureError.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Stores a note and proves it. Remembers what was sent until the service has confirmed it, so that
// a text whose first sending may or may not have arrived can be sent again without a second note.
class CaptureSubmission {
 public:
  // What the service confirmed.
  struct Receipt {
    std::string captureId;
    std::string jobId;
    bool operator==(const Receipt&) const = default;
  };
  using Result = Expected<Receipt, CaptureError>;

  // The client must outlive this object.
  CaptureSubmission(CaptureClient& client, const System& system, std::weak_ptr<WebView> webView,
                    Url origin);

  // A text was sent, and the service may have stored it.
  bool isUnconfirmed() const { return unconfirmed_; }
  const std::optional<CaptureAttempt>& attempt() const { return attempt_; }
  // While an earlier text is unconfirmed, only that one may be sent.
  bool maySend(const std::string& text) const;
  // The user gave up a text that the service refused.
  void forgetAttempt() { attempt_.reset(); }

  // One at a time, of a text that may be sent. `trace` names the run of the application and the
  // note. The task must not outlive this object.
  Task<Result> send(std::string text, CaptureClient::Trace trace);

 private:
  Task<Expected<std::string, CaptureError>> signedInAccount(std::string cookie,
                                                            CaptureClient::Trace trace);
  Task<std::optional<CaptureAttempt>> makeAttempt(std::string text, std::string account,
                                                  std::string flowId);
  // What the page's selector says of the model that is to process the note.
  Task<Json> chosenModel();
  Result judge(const CaptureClient::Reply& reply, bool wasUnconfirmed);

  CaptureClient& client_;
  const System& system_;
  std::weak_ptr<WebView> webView_;
  const Url origin_;
  std::optional<CaptureAttempt> attempt_;
  bool unconfirmed_ = false;
};

}  // namespace navora
