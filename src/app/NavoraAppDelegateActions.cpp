// The user's actions: menu commands and clicks on notifications.
#include <utility>

#include "app/NavoraAppDelegate.h"
#include "app/NavoraMenus.h"
#include "support/FatalError.h"

namespace navora {

void NavoraAppDelegate::performMenuAction(DelegateAction action) {
  switch (action) {
    case DelegateAction::about:
      return about();
    case DelegateAction::enableNotifications:
      return enableNotifications();
    case DelegateAction::checkForUpdates:
      return checkForUpdates();
    case DelegateAction::quickCapture:
      return quickCapture();
    case DelegateAction::reload:
      return reload();
    case DelegateAction::openInBrowser:
      return openInBrowser();
    case DelegateAction::showWindow:
      return showWindow();
  }
}

void NavoraAppDelegate::about() {
  platform_.application().orderFrontStandardAboutPanel(NavoraMenus::about());
}

void NavoraAppDelegate::enableNotifications() {
  notifications_->requestAuthorization();
}

void NavoraAppDelegate::checkForUpdates() {
  if (updates_) updates_->checkForUpdates();
}

void NavoraAppDelegate::prepareForUpdate(UpdateGuard::Answer answer) {
  updateGuard_->prepareForUpdate(std::move(answer));
}

void NavoraAppDelegate::showWindow() {
  if (!window_) fatalError("The main window is missing", "App", __LINE__);
  if (window_->isMiniaturized()) window_->deminiaturize();
  window_->makeKeyAndOrderFront();
  platform_.application().activateIgnoringOtherApplications();
}

void NavoraAppDelegate::quickCapture() {
  if (!restartPrepared()) quickCapturePanel_->show();
}

void NavoraAppDelegate::reload() {
  if (restartPrepared()) return;
  errorView_->hide();
  webView_->load(
      WebRequest{currentServiceUrl().value_or(origin_), CachePolicy::reloadIgnoringLocalCacheData});
}

void NavoraAppDelegate::openInBrowser() {
  platform_.workspace().open(currentServiceUrl().value_or(origin_));
}

void NavoraAppDelegate::openNotification(const Url& url) {
  if (restartPrepared()) return;
  captureFocus_->capturePending = false;
  captureFocus_->pendingDestination = url;
  showWindow();
  if (!url.path().empty() && url.path() != "/") {
    captureFocus_->pendingDestination.reset();
    webView_->load(WebRequest{url});
    return;
  }
  // For a place within the root page, pageDidLoad() continues after the loads below.
  const auto shown = currentServiceUrl();
  if (!shown) {
    loadLogin();
  } else if (shown->path() == "/") {
    captureFocus_->start();
  } else if (shown->path() != "/login") {
    webView_->load(WebRequest{origin_});
  }
}

}  // namespace navora
