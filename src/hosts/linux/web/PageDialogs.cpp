#include "hosts/linux/web/PageDialogs.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace navora {
namespace {

// Returns a pointer that suspends the page's script until its last copy is destroyed.
//
// WebKitGTK (2.50) crashes when a dialog is closed while "script-dialog" is being emitted: it reads
// the dialog afterwards. A dialog without other references at that point is closed by the engine
// itself, so `emitting` limits the explicit close to later.
std::shared_ptr<WebKitScriptDialog> holdOpen(WebKitScriptDialog* dialog,
                                             std::shared_ptr<const bool> emitting) {
  return {webkit_script_dialog_ref(dialog),
          [emitting = std::move(emitting)](WebKitScriptDialog* held) {
            if (!*emitting) webkit_script_dialog_close(held);
            webkit_script_dialog_unref(held);
          }};
}

std::vector<const char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<const char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const auto& text : texts)
    pointers.push_back(text.c_str());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

PageDialogs::PageDialogs(WebKitWebView* view, PageBridge& bridge) : view_(view), bridge_(bridge) {
  signals_.emplace_back(view, "script-dialog", G_CALLBACK(onScriptDialog), this);
  signals_.emplace_back(view, "run-file-chooser", G_CALLBACK(onRunFileChooser), this);
  signals_.emplace_back(view, "print", G_CALLBACK(onPrint), this);
  signals_.emplace_back(view, "authenticate", G_CALLBACK(onAuthenticate), this);
  signals_.emplace_back(view, "permission-request", G_CALLBACK(onPermissionRequest), this);
}

gboolean PageDialogs::onScriptDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer self) {
  static_cast<PageDialogs*>(self)->runDialog(dialog);
  return TRUE;
}

gboolean PageDialogs::onRunFileChooser(WebKitWebView*, WebKitFileChooserRequest* request,
                                       gpointer self) {
  static_cast<PageDialogs*>(self)->runFileChooser(request);
  return TRUE;
}

// Suppresses the engine's print dialog: any frame could raise it, and the application does not
// print.
gboolean PageDialogs::onPrint(WebKitWebView*, WebKitPrintOperation*, gpointer) {
  return TRUE;
}

// Suppresses the engine's dialog for HTTP authentication, which any image's server could raise and
// which would look like the application's own. The 401 response is loaded instead; the service
// signs in with a page.
gboolean PageDialogs::onAuthenticate(WebKitWebView*, WebKitAuthenticationRequest* request,
                                     gpointer) {
  webkit_authentication_request_authenticate(request, nullptr);
  return TRUE;
}

// Denies the camera, the microphone, the location, notifications, the clipboard, the pointer lock
// and whatever else an engine may ask about. The service uses none of them: its notifications come
// through the application.
gboolean PageDialogs::onPermissionRequest(WebKitWebView*, WebKitPermissionRequest* request,
                                          gpointer) {
  webkit_permission_request_deny(request);
  return TRUE;
}

FrameInfo PageDialogs::topFrame() const {
  const char* uri = webkit_web_view_get_uri(view_);
  return {true, uri == nullptr ? std::nullopt : Url::parse(uri)};
}

void PageDialogs::runDialog(WebKitScriptDialog* dialog) {
  if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM) {
    // Leaves the page without asking, as on macOS.
    webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
    return;
  }
  if (delegate_ == nullptr) return;
  const auto emitting = std::make_shared<bool>(true);
  askDelegate(holdOpen(dialog, emitting));
  *emitting = false;
}

void PageDialogs::askDelegate(const std::shared_ptr<WebKitScriptDialog>& held) {
  WebKitScriptDialog* dialog = held.get();
  const auto message = bridge_.readDialogMessage(webkit_script_dialog_get_message(dialog));
  const FrameInfo frame = message.fromTopFrame ? topFrame() : FrameInfo{};
  switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_ALERT:
      return delegate_->runAlertPanel(message.text, frame, [held] {});
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      return delegate_->runConfirmPanel(message.text, frame, [held](bool confirmed) {
        webkit_script_dialog_confirm_set_confirmed(held.get(), confirmed ? TRUE : FALSE);
      });
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
      return delegate_->runTextInputPanel(
          message.text, stringFrom(webkit_script_dialog_prompt_get_default_text(dialog)), frame,
          [held](const std::optional<std::string>& text) {
            if (text) webkit_script_dialog_prompt_set_text(held.get(), text->c_str());
          });
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
      return;
  }
}

void PageDialogs::runFileChooser(WebKitFileChooserRequest* request) {
  const bool multiple = webkit_file_chooser_request_get_select_multiple(request) != FALSE;
  const auto action = bridge_.actions().takeFileChooser(multiple);
  const OpenPanelParameters parameters{multiple, action && action->directories};
  if (delegate_ == nullptr) return webkit_file_chooser_request_cancel(request);

  const auto held = GObjectPtr<WebKitFileChooserRequest>::retain(request);
  delegate_->runOpenPanel(parameters, action ? action->frame : FrameInfo{},
                          [held](const std::optional<std::vector<std::filesystem::path>>& files) {
                            if (!files || files->empty())
                              return webkit_file_chooser_request_cancel(held.get());
                            const std::vector<std::string> names(files->begin(), files->end());
                            webkit_file_chooser_request_select_files(held.get(),
                                                                     pointersTo(names).data());
                          });
}

}  // namespace navora
