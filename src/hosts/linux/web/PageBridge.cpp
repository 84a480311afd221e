#include "hosts/linux/web/PageBridge.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include <gio/gio.h>
#include <sys/random.h>

#include "hosts/linux/web/BridgeScripts.h"
#include "hosts/linux/web/ScriptWorld.h"
#include "platform/ScriptMessage.h"
#include "support/FatalError.h"
#include "support/Json.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr const char* bridgeHandler = "navoraBridge";
constexpr const char* frameHandler = "navoraFrames";
constexpr std::string_view announcementChannel = "navora-announcement";

// Above the largest message that the core accepts, even with every character escaped twice. Larger
// envelopes are dropped unparsed.
constexpr std::size_t maximumEnvelopeBytes = 8 * 1024 * 1024;

std::string randomToken() {
  std::array<unsigned char, 32> bytes{};
  if (getentropy(bytes.data(), bytes.size()) != 0)
    fatalError("getentropy() failed", "PageBridge", __LINE__);
  std::string token;
  for (const unsigned char byte : bytes) {
    token += "0123456789abcdef"[byte >> 4];
    token += "0123456789abcdef"[byte & 15];
  }
  return token;
}

std::string withArguments(std::string_view script, const Json& arguments) {
  std::string list;
  for (const auto& argument : arguments)
    list += (list.empty() ? "" : ", ") + argument.dump();
  return replaceAll(script, "/*ARGUMENTS*/", list);
}

std::optional<Json> envelopeFrom(WebKitJavascriptResult* result) {
  JSCValue* value = webkit_javascript_result_get_js_value(result);
  if (!jsc_value_is_string(value)) return std::nullopt;
  const GCharPtr text(jsc_value_to_string(value));
  const std::string_view view(text.get());
  if (view.size() > maximumEnvelopeBytes) return std::nullopt;
  auto envelope = parseJson(view);
  if (!envelope || !envelope->is_object()) return std::nullopt;
  return envelope;
}

std::optional<Url> urlMember(const Json& object, const char* key) {
  const auto text = stringMember(object, key);
  return text ? Url::parse(*text) : std::nullopt;
}

std::optional<PageAction::Kind> kindOf(const Json& fact) {
  const auto kind = stringMember(fact, "kind");
  if (kind == "link") return PageAction::Kind::link;
  if (kind == "menu") return PageAction::Kind::contextMenu;
  if (kind == "form") return PageAction::Kind::form;
  if (kind == "open") return PageAction::Kind::openWindow;
  if (kind == "files") return PageAction::Kind::chooseFiles;
  return std::nullopt;
}

std::optional<PageAction> actionFrom(const Json& fact, const FrameInfo& frame) {
  const auto kind = kindOf(fact);
  if (!kind) return std::nullopt;
  return PageAction{*kind,
                    frame,
                    urlMember(fact, "href"),
                    boolMember(fact, "directories").value_or(false),
                    boolMember(fact, "multiple").value_or(false),
                    stringMember(fact, "id").value_or("")};
}

}  // namespace

PageBridge::PageBridge(WebKitUserContentManager* manager, const WebViewConfiguration& configuration)
    : manager_(GObjectPtr<WebKitUserContentManager>::retain(manager)),
      handler_(configuration.messageHandler),
      dialogToken_(randomToken()),
      bridgeMessages_(manager, "script-message-received::navoraBridge", G_CALLBACK(onBridgeMessage),
                      this),
      frameMessages_(manager, "script-message-received::navoraFrames", G_CALLBACK(onFrameMessage),
                     this) {
  for (const char* name : {bridgeHandler, frameHandler}) {
    webkit_user_content_manager_register_script_message_handler_in_world(manager, name,
                                                                         isolatedScriptWorld);
  }
  addBridgeScripts(configuration);
  addUserScripts(configuration);
}

PageBridge::~PageBridge() = default;

void PageBridge::addBridgeScripts(const WebViewConfiguration& configuration) {
  const std::string origin = configuration.origin.string();
  const auto addTop = [&](std::string_view script, const Json& arguments, const char* world) {
    addScript(withArguments(script, arguments), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
              WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, world);
  };
  addScript(withArguments(scripts::frameWorld, Json::array({announcementChannel})),
            WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES, WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START,
            isolatedScriptWorld);
  addTop(scripts::bridgeWorld, {origin, announcementChannel}, isolatedScriptWorld);
  addTop(scripts::pageWorld,
         {origin, configuration.messageHandlerNames, dialogToken_, announcementChannel}, nullptr);
}

void PageBridge::addUserScripts(const WebViewConfiguration& configuration) {
  for (const auto& script : configuration.userScripts) {
    addScript(script.source, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
              script.injectionTime == UserScript::InjectionTime::documentStart
                  ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                  : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END,
              nullptr);
  }
}

void PageBridge::addScript(const std::string& source, WebKitUserContentInjectedFrames frames,
                           WebKitUserScriptInjectionTime time, const char* world) {
  WebKitUserScript* script =
      world != nullptr
          ? webkit_user_script_new_for_world(source.c_str(), frames, time, world, nullptr, nullptr)
          : webkit_user_script_new(source.c_str(), frames, time, nullptr, nullptr);
  webkit_user_content_manager_add_script(manager_.get(), script);
  webkit_user_script_unref(script);
}

PageBridge::DialogMessage PageBridge::readDialogMessage(const char* message) const {
  const std::string_view text = message == nullptr ? std::string_view() : std::string_view(message);
  if (!text.starts_with(dialogToken_)) return {std::string(text), false};
  return {std::string(text.substr(dialogToken_.size())), true};
}

void PageBridge::onBridgeMessage(WebKitUserContentManager*, WebKitJavascriptResult* result,
                                 gpointer self) {
  const auto envelope = envelopeFrom(result);
  if (!envelope) return;
  const Json* source = objectMember(*envelope, "source");
  const auto text = stringMember(*envelope, "announcement");
  const auto announcement = text ? parseJson(*text) : std::nullopt;
  if (source == nullptr || !announcement) return;
  static_cast<PageBridge*>(self)->handleAnnouncement(*source, *announcement);
}

void PageBridge::handleAnnouncement(const Json& source, const Json& announcement) {
  const auto name = stringMember(announcement, "name");
  const auto body = stringMember(announcement, "body");
  if (stringMember(announcement, "kind") != "message" || !name || !body) return;
  handler_->didReceiveScriptMessage({*name, *body, {true, urlMember(source, "frameUrl")}});
}

void PageBridge::onFrameMessage(WebKitUserContentManager*, WebKitJavascriptResult* result,
                                gpointer self) {
  const auto envelope = envelopeFrom(result);
  if (!envelope) return;
  auto& actions = static_cast<PageBridge*>(self)->actions_;
  if (const auto ended = stringMember(*envelope, "ended")) return actions.end(*ended);
  if (const auto over = stringMember(*envelope, "over")) return actions.eventOver(*over);
  const Json* source = objectMember(*envelope, "source");
  if (source == nullptr) return;
  const FrameInfo frame{boolMember(*source, "top").value_or(false), urlMember(*source, "frameUrl")};
  if (auto action = actionFrom(*envelope, frame)) actions.add(*std::move(action));
}

}  // namespace navora
