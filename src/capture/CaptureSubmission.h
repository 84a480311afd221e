#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "capture/CaptureClient.h"
#include "capture/CaptureError.h"
#include "capture/QuickCapturePolicy.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Sends a note and verifies that it was stored. Keeps the attempt until the service has confirmed
// it, so that a text that may already have arrived can be sent again without creating a second
// note.
class CaptureSubmission {
 public:
  using Result = Expected<QuickCapturePolicy::Receipt, CaptureError>;

  // The references must outlive this object.
  CaptureSubmission(CaptureClient& client, MainQueue& mainQueue, const System& system,
                    std::weak_ptr<WebView> webView, Url origin);

  // Stores the attempt outside the process; must be set before the first send. Awaited before a
  // note is posted, so that a process that ends before the reply leaves what a safe retry needs.
  std::function<Task<>()> storeAttempt;

  // Returns whether a note was sent that the service may have stored but has not confirmed.
  bool isUnconfirmed() const { return unconfirmed_; }
  const std::optional<CaptureAttempt>& attempt() const { return attempt_; }
  // Returns whether `text` may be sent: while a note is unconfirmed, only its own text may be.
  bool maySend(const std::string& text) const;
  // Continues with the attempt of an earlier process. Called before the first send.
  void restore(std::optional<CaptureAttempt> attempt, bool unconfirmed);
  // Discards the attempt of a note that the service refused and the user has deleted.
  void forgetAttempt() { attempt_.reset(); }

  // Sends a text for which `maySend` is true. One send at a time; the task must not outlive this
  // object.
  Task<Result> send(std::string text, CaptureClient::Trace trace);

 private:
  Task<Expected<std::string, CaptureError>> signedInAccount(std::string cookie,
                                                            CaptureClient::Trace trace);
  Task<std::optional<CaptureAttempt>> makeAttempt(std::string text, std::string account,
                                                  std::string flowId);
  // Reads which model the page has selected to process the note: an object with the optional texts
  // "provider" and "model".
  Task<Json> chosenModel();
  Result evaluateReply(const CaptureClient::Reply& reply, bool wasUnconfirmed);

  CaptureClient& client_;
  MainQueue& mainQueue_;
  const System& system_;
  std::weak_ptr<WebView> webView_;
  const Url origin_;
  std::optional<CaptureAttempt> attempt_;
  bool unconfirmed_ = false;
};

}  // namespace navora
