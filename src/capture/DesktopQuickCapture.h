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
#include "capture/KeptDraft.h"
#include "origin/ServiceClient.h"
#include "platform/BackgroundQueue.h"
#include "platform/CapturePanelView.h"
#include "platform/MainQueue.h"
#include "platform/PrivateFile.h"
#include "platform/System.h"
#include "platform/UserDefaults.h"
#include "platform/WebView.h"
#include "platform/Workspace.h"
#include "support/Json.h"
#include "support/Lifetime.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// The small floating panel in which the user writes a note from anywhere on the desktop. The text
// stays in the panel until the service has confirmed the note, and survives the process.
class DesktopQuickCapture final : private CapturePanelDelegate {
 public:
  // The references must outlive this object.
  struct Dependencies {
    BackgroundQueue& backgroundQueue;
    MainQueue& mainQueue;
    const System& system;
    UserDefaults& userDefaults;
    Workspace& workspace;
    // Holds the draft while the application does not run.
    std::shared_ptr<PrivateFile> draftFile;
    // Called once, before the first request.
    ServiceClient::MakeHttpSession makeHttpSession;
    // Called once, by the constructor.
    std::function<std::unique_ptr<CapturePanelView>(Size, CapturePanelDelegate&)> makePanel;
  };

  // Notes are sent as the user who is signed in to `webView`. Restores the draft of an earlier
  // process.
  DesktopQuickCapture(const Dependencies& dependencies, std::weak_ptr<WebView> webView,
                      const Url& origin);
  ~DesktopQuickCapture() override;

  DesktopQuickCapture(const DesktopQuickCapture&) = delete;
  DesktopQuickCapture& operator=(const DesktopQuickCapture&) = delete;

  // Called when the user must sign in before the note can be sent.
  std::function<void()> onLogin;
  // Called with a title and the failure's text when a note could not be sent while the panel was
  // hidden. Must either tell the user or call `showPanel`, which shows the panel instead.
  std::function<void(const std::string& title, const std::string& text,
                     std::function<void()> showPanel)>
      onHiddenFailure;

  // Opens the panel with its draft on the pointer's screen, or brings the open panel to the front.
  void show();
  // Hides the panel and keeps the draft. With `restoreFocus`, activates the application that had
  // the focus before.
  void hide(bool restoreFocus);
  // Sends the draft, unless it is empty or too long, is being sent already, or differs from a note
  // that is still unconfirmed.
  void submit();
  // Sets every text again, in the current language.
  void refreshLocale();
  // Adopts the page's appearance, as the page reports it, and stores it for the next launch.
  // Ignores one that cannot be read.
  void syncAppearance(const Json& dictionary);
  // Reopens the panel if its note is waiting for the user to sign in. Called when a page has loaded
  // that only a signed-in user sees.
  void resumeAfterLogin();

  // Tells the user about a note that an earlier process sent and whose outcome is unknown. Called
  // once, after `onHiddenFailure` has been set.
  void tellRestoredFailure();
  // Commits the text that an input method is composing and writes the draft to its file. Called
  // when the application ends; blocks until the draft is on the disk or could not be written.
  void flushDraft();

  // Returns whether a restart now could lose a text or store it twice.
  bool preventsRestart();
  // Hides the panel without activating another application: this one is about to be restarted.
  void hideForRestart();

 private:
  bool editorKeyDown(const KeyEvent& event, bool composing) override;
  bool editorKeyEquivalent(const KeyEvent& event, bool composing) override;
  void editorTextDidChange() override;
  void editorCompositionDidChange() override { updateLayout(); }
  void editorDidChangeFocus(bool focused) override;
  void panelDidResignKey() override;
  void submitButtonPressed() override;
  void submitButtonHovered(bool hovered) override;
  void paintSurface(Canvas& canvas, Size bounds) override;
  void paintSubmitButton(Canvas& canvas, Size bounds) override;
  void systemAppearanceDidChange(bool dark) override;

  std::string trimmedText() const;
  CaptureDraft currentDraft() const;
  // Updates the send button and the message for the editor's trimmed text.
  void showStateOf(const std::string& text);
  void setMessage(CaptureMessage message);
  void setSubmitEnabled(bool enabled);
  void refreshPlaceholder();
  void restoreDraft();
  void restoreAppearance();
  void applyAppearance(const CaptureAppearance& appearance);
  // Places the hidden panel and remembers which application had the focus.
  void prepareToShow();
  void place();
  void updateLayout();
  void beginBusy();
  void endBusy();
  Task<> send(std::string text);
  void noteAccepted(const QuickCapturePolicy::Receipt& receipt);
  void noteFailed(const CaptureError& error);
  void tellHiddenFailure();
  void showUnseenFailure();
  void debug(const std::string& line) const;

  const System& system_;
  UserDefaults& userDefaults_;
  Workspace& workspace_;
  CaptureClient client_;
  CaptureSubmission submission_;
  CaptureTelemetry telemetry_;
  KeptDraft keptDraft_;
  CaptureSurface surface_;
  CaptureSubmitButton submitButton_;
  CaptureAppearance palette_;
  CaptureMessage messageText_;
  // Set by the last updateLayout().
  CapturePanelLayout layout_;
  bool busy_ = false;
  bool awaitingLogin_ = false;
  // Whether the message is a failure that the user has not seen, because the panel is hidden.
  bool failureIsUnseen_ = false;
  std::shared_ptr<RunningApplication> previousApplication_;
  std::unique_ptr<CapturePanelView> panel_;
  Task<> sending_;
  Lifetime lifetime_;
};

}  // namespace navora
