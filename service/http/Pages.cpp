#include "service/http/Pages.h"

#include <utility>

#include "service/http/SessionCookie.h"
#include "service/storage/SettingsRules.h"
#include "service/support/Files.h"
#include "service/support/Text.h"

namespace navora::service {

Pages::Pages(Settings settings, Storage& storage)
    : settings_(std::move(settings)), storage_(storage) {}

void Pages::addRoutes(httplib::Server& server) {
  server.Get("/", [this](const httplib::Request& request, httplib::Response& response) {
    showApplication(request, response);
  });
  server.Get("/assets/(.+)", [this](const httplib::Request& request, httplib::Response& response) {
    showAsset(request.matches[1].str(), response);
  });
  server.Get("/favicon.ico", [this](const httplib::Request&, httplib::Response& response) {
    showAsset("mark.svg", response);
  });
}

void Pages::showLogin(const httplib::Request& request, httplib::Response& response,
                      const std::string& error) const {
  const auto locale = SettingsRules::detectLocale(request.get_header_value("Accept-Language"));
  showPage("login.html",
           {{"locale", locale.value_or("en")},
            {"error", escapedHtml(error)},
            {"errorState", error.empty() ? "hidden" : ""},
            {"name", escapedHtml(request.get_param_value("name"))}},
           response);
}

void Pages::showApplication(const httplib::Request& request, httplib::Response& response) const {
  const auto user = SessionCookie::user(request, storage_.accounts);
  if (!user) {
    response.set_redirect("/login");
    return;
  }
  const Json settings = storage_.settings.read(user->id);
  std::string locale = settings.value("locale", "system");
  if (locale == "system") {
    locale =
        SettingsRules::detectLocale(request.get_header_value("Accept-Language")).value_or("en");
  }
  showPage("index.html",
           {{"locale", escapedHtml(locale)},
            {"theme", escapedHtml(settings.value("theme", "system"))},
            {"user", escapedHtml(user->name)}},
           response);
}

void Pages::showAsset(const std::string& name, httplib::Response& response) const {
  const auto content =
      isPlainRelativePath(name) ? readFile(settings_.directory / "assets" / name) : std::nullopt;
  if (!content) {
    response.status = 404;
    response.set_content("There is no such file.\n", "text/plain; charset=utf-8");
    return;
  }
  response.set_header("Cache-Control", "no-cache");
  response.set_content(*content, mediaType(name));
}

void Pages::showPage(const std::string& name, std::map<std::string, std::string> values,
                     httplib::Response& response) const {
  const auto page = readFile(settings_.directory / name);
  if (!page) {
    response.status = 500;
    response.set_content("The page " + name + " cannot be read.\n", "text/plain; charset=utf-8");
    return;
  }
  values["head"] = settings_.headInsertion;
  response.set_header("Cache-Control", "no-store");
  response.set_header("Content-Security-Policy", settings_.contentSecurityPolicy);
  response.set_content(filledTemplate(*page, values), "text/html; charset=utf-8");
}

}  // namespace navora::service
