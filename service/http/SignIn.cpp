#include "service/http/RequestOrigin.h"
#include "service/http/Routes.h"
#include "service/http/SessionCookie.h"

namespace navora::service {

void addSignInRoutes(httplib::Server& server, Accounts& accounts,
                     const std::function<void(const httplib::Request&, httplib::Response&,
                                              const std::string& error)>& showLogin) {
  server.Get("/login",
             [&accounts, showLogin](const httplib::Request& request, httplib::Response& response) {
               if (SessionCookie::user(request, accounts)) {
                 response.set_redirect("/");
               } else {
                 showLogin(request, response, "");
               }
             });
  server.Post("/login",
              [&accounts, showLogin](const httplib::Request& request, httplib::Response& response) {
                if (comesFromAnotherOrigin(request)) {
                  response.status = 403;
                  return;
                }
                const auto token = accounts.signIn(request.get_param_value("name"),
                                                   request.get_param_value("password"));
                if (!token) {
                  response.status = 401;
                  showLogin(request, response, "The name or the password is not right.");
                  return;
                }
                SessionCookie::set(response, *token);
                response.set_redirect("/", 303);
              });
  server.Post("/logout", [&accounts](const httplib::Request& request, httplib::Response& response) {
    if (comesFromAnotherOrigin(request)) {
      response.status = 403;
      return;
    }
    accounts.signOut(SessionCookie::token(request));
    SessionCookie::clear(response);
    response.set_redirect("/login", 303);
  });
}

}  // namespace navora::service
