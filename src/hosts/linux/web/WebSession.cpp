#include "hosts/linux/web/WebSession.h"

#include <filesystem>
#include <iostream>
#include <string>

namespace navora {
namespace {

constexpr const char* applicationFolder = "navora";

std::string userFolder(const char* base) {
  return (std::filesystem::path(base) / applicationFolder).string();
}

// Starts bwrap, as the engine's sandbox does. Containers and hardened kernels may forbid the user
// namespaces that it needs; with its sandbox enabled, WebKitGTK then starts no web process at all.
// Returns null if bwrap cannot be started.
GObjectPtr<GSubprocess> startSandboxTrial() {
  constexpr auto silent = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                                        G_SUBPROCESS_FLAGS_STDERR_SILENCE);
  return GObjectPtr<GSubprocess>::adopt(g_subprocess_new(silent, nullptr, "bwrap", "--unshare-user",
                                                         "--unshare-pid", "--ro-bind", "/", "/",
                                                         "true", nullptr));
}

}  // namespace

WebSession::WebSession() {
  // Runs while the web context is made.
  const GObjectPtr<GSubprocess> sandboxTrial = startSandboxTrial();
  const std::string data = userFolder(g_get_user_data_dir());
  const std::string cache = userFolder(g_get_user_cache_dir());
  dataManager_ = GObjectPtr<WebKitWebsiteDataManager>::adopt(webkit_website_data_manager_new(
      "base-data-directory", data.c_str(), "base-cache-directory", cache.c_str(), nullptr));
  context_ = GObjectPtr<WebKitWebContext>::adopt(
      webkit_web_context_new_with_website_data_manager(dataManager_.get()));
  keepCookies();
  enableSandbox(sandboxTrial && g_subprocess_wait_check(sandboxTrial.get(), nullptr, nullptr));
}

void WebSession::keepCookies() {
  const auto folder = std::filesystem::path(userFolder(g_get_user_data_dir()));
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  // Keeps other users from reading the session cookie.
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);

  WebKitCookieManager* cookies = webkit_website_data_manager_get_cookie_manager(dataManager_.get());
  webkit_cookie_manager_set_persistent_storage(cookies, (folder / "cookies.sqlite").c_str(),
                                               WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  webkit_cookie_manager_set_accept_policy(cookies, WEBKIT_COOKIE_POLICY_ACCEPT_NO_THIRD_PARTY);
}

void WebSession::enableSandbox(bool isPossible) {
  if (isPossible) {
    webkit_web_context_set_sandbox_enabled(context_.get(), TRUE);
  } else {
    std::cerr << "Navora: this system does not allow the web sandbox; pages run without it\n";
  }
}

}  // namespace navora
