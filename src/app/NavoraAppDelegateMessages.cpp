// What the page tells the application.
#include <cstddef>

#include "app/LocaleMessage.h"
#include "app/NavoraAppDelegate.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"

namespace navora {
namespace {

// No message of ours comes near this size; a larger one is not worth parsing.
constexpr std::size_t maximumMessageBytes = 1024 * 1024;

}  // namespace

void NavoraAppDelegate::didReceiveScriptMessage(const ScriptMessage& message) {
  if (!message.frame.isMainFrame || !message.frame.requestUrl) return;
  if (!DesktopOrigin::contains(*message.frame.requestUrl, origin_)) return;
  if (message.body.size() > maximumMessageBytes) return;
  const auto body = parseJson(message.body);
  if (!body) return;

  if (message.name == "navoraLocale") {
    handleLocaleMessage(*body);
  } else if (message.name == "navoraCaptureAppearance") {
    handleAppearanceMessage(*body);
  } else if (message.name == "navoraTimeZoneDetection") {
    refreshSystemTimeZone();
  } else if (message.name == "navoraNotifications") {
    handleNotificationsMessage(*body);
  }
}

void NavoraAppDelegate::handleLocaleMessage(const Json& body) {
  const auto message = LocaleMessage::read(body);
  if (!message) return;
  DesktopLocale::requested = message->requested;
  DesktopLocale::detected = message->detected;
  if (DesktopLocale::current() == displayedLocale_) return;
  displayedLocale_ = DesktopLocale::current();
  rebuildInterface();
}

void NavoraAppDelegate::handleAppearanceMessage(const Json& body) {
  const auto appearance = CaptureAppearance::read(body);
  if (!appearance) return;
  quickCapturePanel_->syncAppearance(body);
  window_->setAppearance(appearance->windowAppearance());
}

void NavoraAppDelegate::handleNotificationsMessage(const Json& body) {
  if (!notifications_) return;
  if (body == "enable") {
    notifications_->requestAuthorization();
  } else if (body == "disable") {
    notifications_->disable();
  } else if (body == "test") {
    notifications_->sendTest();
  } else if (body == "status") {
    notifications_->publishAuthorization();
  }
}

void NavoraAppDelegate::rebuildInterface() {
  window_->setTitle(L("Навора"));
  makeMenus();
  quickCapturePanel_->refreshLocale();
  updates_->refreshLocale();
  errorView_->refreshLocale();
  statusItem_.reset();
  makeStatusItem();
}

}  // namespace navora
