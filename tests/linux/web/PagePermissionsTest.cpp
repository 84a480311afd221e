#include <string>

#include <gmock/gmock.h>
#include <gtkmm/window.h>
#include <webkit2/webkit2.h>

#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

// A permission request of a kind that no engine has yet. Records its answers.
struct UnknownRequest {
  GObject parent;
  int allowed;
  int denied;
};
struct UnknownRequestClass {
  GObjectClass parent;
};

void answerRequests(gpointer interface, gpointer) {
  auto* answers = static_cast<WebKitPermissionRequestIface*>(interface);
  answers->allow = [](WebKitPermissionRequest* request) {
    ++reinterpret_cast<UnknownRequest*>(request)->allowed;
  };
  answers->deny = [](WebKitPermissionRequest* request) {
    ++reinterpret_cast<UnknownRequest*>(request)->denied;
  };
}

GType unknownRequestType() {
  static const GType type = [] {
    const GType made = g_type_register_static_simple(
        G_TYPE_OBJECT, "NavoraTestUnknownRequest", sizeof(UnknownRequestClass), nullptr,
        sizeof(UnknownRequest), nullptr, static_cast<GTypeFlags>(0));
    const GInterfaceInfo info{answerRequests, nullptr, nullptr};
    g_type_add_interface_static(made, WEBKIT_TYPE_PERMISSION_REQUEST, &info);
    return made;
  }();
  return type;
}

class PagePermissionsTest : public WebViewTest {
 protected:
  // The engine keeps some requests of a page that is not visible.
  void show() {
    window_.set_default_size(600, 400);
    gtk_container_add(GTK_CONTAINER(window_.gobj()), view_->widget());
    gtk_widget_show(view_->widget());
    window_.present();
    ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(window_); }));
  }

  // Returns what the function makes of `promise`, an expression of the page.
  Json settled(const std::string& promise) {
    run("window.outcome = undefined; (async () => { try { const value = await (" + promise +
        "); window.outcome = 'allowed: ' + value; } catch (error) { "
        "window.outcome = error.name ?? error.code; } })()");
    EXPECT_TRUE(waitUntil([this] { return evaluate("outcome !== undefined") == true; })) << promise;
    return evaluate("outcome");
  }

  Gtk::Window window_;
};

TEST_F(PagePermissionsTest, DeniesARequestOfAnyKind) {
  ASSERT_TRUE(loadHtml(""));
  const auto request =
      GObjectPtr<GObject>::adopt(G_OBJECT(g_object_new(unknownRequestType(), nullptr)));
  gboolean handled = FALSE;
  g_signal_emit_by_name(view_->widget(), "permission-request", request.get(), &handled);
  EXPECT_TRUE(handled);
  const auto* answers = reinterpret_cast<UnknownRequest*>(request.get());
  EXPECT_EQ(answers->denied, 1);
  EXPECT_EQ(answers->allowed, 0);
  // The default of the engine is not what denies it.
  EXPECT_NE(g_signal_handler_find(view_->widget(), G_SIGNAL_MATCH_ID,
                                  g_signal_lookup("permission-request", WEBKIT_TYPE_WEB_VIEW), 0,
                                  nullptr, nullptr, nullptr),
            0UL);
}

TEST_F(PagePermissionsTest, DeniesThePointerLock) {
  ASSERT_TRUE(loadHtml("<p id=text>text</p>"));
  show();
  run("window.outcome = undefined; document.onpointerlockchange = () => { outcome = 'locked'; };"
      "document.onpointerlockerror = () => { outcome = 'denied'; };"
      "text.requestPointerLock()");
  ASSERT_TRUE(waitUntil([this] { return evaluate("outcome !== undefined") == true; }));
  EXPECT_EQ(evaluate("outcome"), "denied");
}

TEST_F(PagePermissionsTest, DeniesWhatPagesAskFor) {
  ASSERT_TRUE(loadHtml(""));
  show();
  EXPECT_EQ(settled("new Promise((resolve, reject) => "
                    "navigator.geolocation.getCurrentPosition(resolve, reject))"),
            1);  // GeolocationPositionError.PERMISSION_DENIED
  EXPECT_EQ(settled("Notification.requestPermission()"), "allowed: denied");
  EXPECT_EQ(settled("navigator.clipboard.readText()"), "NotAllowedError");
  for (const char* device : {"{audio: true}", "{video: true}"}) {
    // The latter on a machine without such a device.
    EXPECT_THAT(settled("navigator.mediaDevices.getUserMedia(" + std::string(device) + ")"),
                testing::AnyOf(Json("NotAllowedError"), Json("OverconstrainedError")));
  }
}

}  // namespace
}  // namespace navora
