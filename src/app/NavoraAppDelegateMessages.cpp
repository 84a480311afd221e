// The messages of the page.
#include <algorithm>
#include <cstddef>

#include "app/NavoraAppDelegate.h"
#include "app/PageMessages.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"

namespace navora {
namespace {

// Far above the size of any valid message; a larger one is not worth parsing.
constexpr std::size_t maximumMessageBytes = 1024 * 1024;

}  // namespace

const std::array<NavoraAppDelegate::MessageHandler, 4> NavoraAppDelegate::messageHandlers = {{
    {PageMessages::locale, &NavoraAppDelegate::handleLocale},
    {PageMessages::captureAppearance, &NavoraAppDelegate::handleCaptureAppearance},
    {PageMessages::timeZoneDetection, &NavoraAppDelegate::handleTimeZoneDetection},
    {PageMessages::notifications, &NavoraAppDelegate::handleNotifications},
}};

void NavoraAppDelegate::didReceiveScriptMessage(const ScriptMessage& message) {
  if (!message.frame.isMainFrame || !message.frame.requestUrl) return;
  if (!DesktopOrigin::contains(*message.frame.requestUrl, origin_)) return;
  if (message.body.size() > maximumMessageBytes) return;
  const auto* handler = std::ranges::find(messageHandlers, message.name, &MessageHandler::name);
  if (handler == messageHandlers.end()) return;
  if (const auto body = parseJson(message.body)) (this->*handler->handle)(*body);
}

void NavoraAppDelegate::handleLocale(const Json& body) {
  const auto message = LocaleMessage::read(body);
  if (!message) return;
  DesktopLocale::requested = message->requested;
  DesktopLocale::detected = message->detected;
  const std::string locale = DesktopLocale::current();
  if (locale == displayedLocale_) return;
  displayedLocale_ = locale;
  rebuildInterface();
}

void NavoraAppDelegate::handleCaptureAppearance(const Json& body) {
  const auto appearance = CaptureAppearance::read(body);
  if (!appearance) return;
  if (quickCapturePanel_) quickCapturePanel_->syncAppearance(body);
  window_->setAppearance(appearance->windowAppearance());
}

void NavoraAppDelegate::handleTimeZoneDetection(const Json&) {
  refreshSystemTimeZone();
}

void NavoraAppDelegate::handleNotifications(const Json& body) {
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
  if (quickCapturePanel_) quickCapturePanel_->refreshLocale();
  if (updates_) updates_->refreshLocale();
  errorView_->refreshLocale();
  if (!statusItem_) return;
  statusItem_.reset();
  makeStatusItem();
}

}  // namespace navora
