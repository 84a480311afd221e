#include "hosts/linux/web/Cookies.h"

#include <memory>
#include <utility>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

using Completion = std::function<void(std::vector<HttpCookie>)>;

void freeCookie(gpointer cookie) {
  soup_cookie_free(static_cast<SoupCookie*>(cookie));
}

void finish(GObject* store, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Completion> completion(static_cast<Completion*>(data));
  GErrorPtr error;
  GList* list = webkit_cookie_manager_get_all_cookies_finish(WEBKIT_COOKIE_MANAGER(store), result,
                                                             error.out());
  std::vector<HttpCookie> cookies;
  for (GList* link = list; link != nullptr; link = link->next)
    cookies.push_back(httpCookieFrom(*static_cast<SoupCookie*>(link->data)));
  g_list_free_full(list, freeCookie);
  if (error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
  (*completion)(std::move(cookies));
}

}  // namespace

HttpCookie httpCookieFrom(SoupCookie& cookie) {
  HttpCookie result{.name = stringFrom(soup_cookie_get_name(&cookie)),
                    .value = stringFrom(soup_cookie_get_value(&cookie)),
                    .domain = stringFrom(soup_cookie_get_domain(&cookie)),
                    .path = stringFrom(soup_cookie_get_path(&cookie)),
                    .isSecure = soup_cookie_get_secure(&cookie) != FALSE,
                    .expires = std::nullopt};
  if (GDateTime* expiry = soup_cookie_get_expires(&cookie)) {
    result.expires = dateFromSecondsSince1970(static_cast<double>(g_date_time_to_unix(expiry)));
  }
  return result;
}

void readAllCookies(WebKitCookieManager* store, GCancellable* cancellable, Completion completion) {
  webkit_cookie_manager_get_all_cookies(store, cancellable, finish,
                                        new Completion(std::move(completion)));
}

}  // namespace navora
