#include "service/Service.h"

#include <thread>
#include <utility>

#include <httplib.h>
#include <sys/socket.h>

#include "service/http/Api.h"
#include "service/http/Pages.h"
#include "service/http/Routes.h"
#include "service/http/SessionCookie.h"
#include "service/http/UpdatesApi.h"
#include "service/jobs/JobRunner.h"
#include "service/storage/SampleData.h"
#include "service/storage/SamplePeople.h"
#include "service/storage/Storage.h"
#include "service/testing/TestControls.h"
#include "service/testing/TestFront.h"
#include "service/testing/TestPages.h"

namespace navora::service {
namespace {

constexpr std::size_t bodyLimit = 1024 * 1024;
constexpr std::size_t serverThreads = 32;

Pages::Settings pageSettings(const ServiceOptions& options) {
  std::string policy =
      "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
      "connect-src 'self'; form-action 'self'; base-uri 'none'; frame-ancestors 'self'";
  std::string head;
  if (options.testDriver) {
    // The driver evaluates the scripts of tests.
    policy.replace(policy.find("script-src 'self'"), 17, "script-src 'self' 'unsafe-eval'");
    head = R"(<script src="/__test/driver.js?name=main"></script>)";
  }
  return {options.pages, head, policy};
}

// Adds a body to an error without one: JSON below "/api/", plain text elsewhere.
void completeError(const httplib::Request& request, httplib::Response& response,
                   Accounts& accounts) {
  if (!response.body.empty()) return;
  if (!request.path.starts_with("/api/")) {
    response.set_content("Error " + std::to_string(response.status) + "\n",
                         "text/plain; charset=utf-8");
    return;
  }
  if (response.status == 404 && !SessionCookie::user(request, accounts)) {
    Api::fail(response, 401, "signed_out", "Sign in to continue.");
  } else if (response.status == 413) {
    Api::fail(response, 413, "too_large", "The request is larger than 1 MiB.");
  } else {
    Api::fail(response, response.status, "not_possible", "This is not possible.");
  }
}

void configure(httplib::Server& server, Accounts& accounts) {
  server.new_task_queue = [] { return new httplib::ThreadPool(serverThreads); };
  server.set_payload_max_length(bodyLimit);
  server.set_tcp_nodelay(true);
  // Short, because stopping waits this long for idle connections.
  server.set_keep_alive_timeout(1);
  // By default the library lets two services share a port.
  server.set_socket_options([](socket_t socket) {
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  });
  server.set_default_headers({{"X-Content-Type-Options", "nosniff"},
                              {"Referrer-Policy", "same-origin"},
                              {"X-Frame-Options", "SAMEORIGIN"}});
  server.set_post_routing_handler([](const httplib::Request&, httplib::Response& response) {
    if (!response.has_header("Cache-Control")) response.set_header("Cache-Control", "no-store");
  });
  server.set_error_handler(
      [&accounts](const httplib::Request& request, httplib::Response& response) {
        completeError(request, response, accounts);
      });
  server.set_exception_handler(
      [](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
        Api::fail(response, 500, "failed", "The service could not do this.");
      });
}

}  // namespace

class Service::Parts {
 public:
  explicit Parts(const ServiceOptions& options)
      : hasSamples_(options.samples),
        storage_(options.database, options.accounts),
        people_(storage_),
        pages_(pageSettings(options), storage_),
        api_(server_, storage_.accounts),
        jobs_(storage_.captures) {
    configure(server_, storage_.accounts);
    addSignInRoutes(server_, storage_.accounts,
                    [this](const auto& request, auto& response, const std::string& error) {
                      pages_.showLogin(request, response, error);
                    });
    pages_.addRoutes(server_);
    addSettingsRoutes(api_, storage_);
    addNotificationRoutes(api_, storage_);
    addCaptureRoutes(api_, storage_, options.jobDelay, [this] { jobs_.wake(); });
    addCirclesRoutes(api_, storage_, [this](const User& user, const std::string& roomId) {
      if (hasSamples_) people_.didReceiveMessage(user, roomId);
    });
    addCalendarRoutes(api_, storage_, [this](const User& user, const Json& event) {
      if (hasSamples_) people_.didReceiveEvent(user, event);
    });
    addExportRoutes(api_, storage_);
    addTelemetryRoutes(api_, telemetry_);
    addUpdateRoutes(server_, options.updates);
    if (!options.samples) return;
    for (const auto& [name, password] : options.accounts) {
      addSampleData(storage_, storage_.accounts.user(name));
    }
  }

  ~Parts() {
    front_.reset();
    if (!thread_.joinable()) return;
    storage_.captures.changes().close();
    server_.stop();
    thread_.join();
  }

  bool listen(const ServiceOptions& options) {
    if (!options.test) return listenDirectly(options);
    auto listener = Listener::open(options.host, options.port);
    if (!listener) return false;
    const int innerPort = server_.bind_to_any_port("127.0.0.1");
    if (innerPort < 0) return false;
    run();
    controls_.emplace(storage_, telemetry_, options.accounts.begin()->first);
    front_.emplace(*std::move(listener), innerPort, *controls_, TestPages(options.testPages));
    port_ = front_->port();
    return true;
  }

  int port() const { return port_; }

 private:
  bool listenDirectly(const ServiceOptions& options) {
    if (options.port == 0) {
      port_ = server_.bind_to_any_port(options.host);
    } else if (server_.bind_to_port(options.host, options.port)) {
      port_ = options.port;
    }
    if (port_ <= 0) return false;
    run();
    return true;
  }

  void run() {
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // stop() has no effect before the server runs.
    while (!server_.is_running())
      std::this_thread::yield();
  }

  const bool hasSamples_;
  Storage storage_;
  SamplePeople people_;
  TelemetryLog telemetry_;
  httplib::Server server_;
  Pages pages_;
  Api api_;
  JobRunner jobs_;
  int port_ = -1;
  std::thread thread_;
  std::optional<TestControls> controls_;
  std::optional<TestFront> front_;
};

Service::Service(ServiceOptions options) : options_(std::move(options)) {}

Service::~Service() {
  stop();
}

std::optional<std::string> Service::start() {
  try {
    parts_ = std::make_unique<Parts>(options_);
  } catch (const DatabaseError& error) {
    return "the database " + options_.database + " cannot be used: " + error.what();
  }
  if (parts_->listen(options_)) return std::nullopt;
  parts_.reset();
  return "cannot listen on " + options_.host + " port " + std::to_string(options_.port);
}

void Service::stop() {
  parts_.reset();
}

int Service::port() const {
  return parts_ ? parts_->port() : -1;
}

std::string Service::address() const {
  const std::string host = options_.host == "::1" ? "[::1]" : options_.host;
  return "http://" + host + ":" + std::to_string(port()) + "/";
}

}  // namespace navora::service
