#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "capture/CaptureAppearance.h"
#include "capture/CaptureClient.h"
#include "capture/CaptureError.h"
#include "capture/CapturePainting.h"
#include "capture/CaptureSubmission.h"
#include "capture/CaptureTelemetry.h"
#include "platform/CapturePanelView.h"
#include "platform/Platform.h"
#include "platform/WebView.h"
#include "support/Json.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// The small floating panel in which the user writes a note from anywhere on the desktop. The text
// stays in it until the service has confirmed the note, whatever fails.
class DesktopQuickCapture final : private CapturePanelDelegate {
 public:
  // The platform must outlive this object. The notes are sent as the user who is signed in to
  // `webView`.
  DesktopQuickCapture(Platform& platform, std::weak_ptr<WebView> webView, Url origin);
  ~DesktopQuickCapture();

  DesktopQuickCapture(const DesktopQuickCapture&) = delete;
  DesktopQuickCapture& operator=(const DesktopQuickCapture&) = delete;

  // The user must sign in before the note can be sent.
  std::function<void()> onLogin;

  // Opens the panel on the pointer's screen with whatever draft is in it, or brings it to the
  // front.
  void show();
  // The draft stays. With `restoreFocus` the application that was in front gets the focus again.
  void hide(bool restoreFocus);
  // Sends the draft, if it may be sent.
  void submit();
  // The native language changed.
  void refreshLocale();
  // The page's look, as it reports it; one that cannot be read changes nothing. Kept for the next
  // launch.
  void syncAppearance(const Json& dictionary);
  // The page that follows a login is there: the draft comes back if it was waiting for that.
  void resumeAfterLogin();

  // A restart now could lose a text or store it twice.
  bool preventsRestart() const;
  // Without the focus going anywhere: the application is about to end.
  void hideForRestart();

 private:
  bool editorKeyDown(const KeyEvent& event, bool composing) override;
  bool editorKeyEquivalent(const KeyEvent& event, bool composing) override;
  void editorTextDidChange() override;
  void editorDidChangeFocus(bool focused) override;
  void panelDidResignKey() override;
  void submitButtonPressed() override;
  void submitButtonHovered(bool hovered) override;
  void paintSurface(Canvas& canvas, Size bounds) override;
  void paintSubmitButton(Canvas& canvas, Size bounds) override;
  void systemAppearanceDidChange(bool dark) override;

  std::string trimmedText() const;
  void setMessage(CaptureMessage message);
  void setSubmitEnabled(bool enabled);
  void refreshPlaceholder();
  void restoreAppearance();
  void applyAppearance(const CaptureAppearance& appearance);
  void place();
  void updateLayout();
  void beginBusy();
  void endBusy();
  Task<> send(std::string text);
  void noteAccepted(const QuickCapturePolicy::Receipt& receipt);
  void noteFailed(const CaptureError& error);

  Platform& platform_;
  CaptureClient client_;
  CaptureSubmission submission_;
  CaptureTelemetry telemetry_;
  CaptureSurface surface_;
  CaptureSubmitButton submitButton_;
  CaptureAppearance palette_;
  CaptureMessage messageText_;
  bool busy_ = false;
  bool awaitingLogin_ = false;
  std::shared_ptr<RunningApplication> previousApplication_;
  std::unique_ptr<CapturePanelView> panel_;
  Task<> sending_;
};

}  // namespace navora
