#include "linux/capture/InputMethod.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include <gtk/gtk.h>
#include <unistd.h>

#include "linux/support/TestDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

namespace navora {
namespace {

constexpr const char* ownModule = "gtk-im-context-simple";
constexpr const char* daemonName = "org.freedesktop.IBus";
constexpr const char* daemonPath = "/org/freedesktop/IBus";

void useModule(const char* name) {
  g_object_set(gtk_settings_get_default(), "gtk-im-module", name, nullptr);
}

// The environment of the test's desktop, in which this process runs.
driver::Environment ownEnvironment() {
  driver::Environment environment;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view line(*variable);
    const auto equals = line.find('=');
    environment[std::string(line.substr(0, equals))] = line.substr(equals + 1);
  }
  return environment;
}

std::filesystem::path desktopFolder() {
  return std::getenv(TestDesktop::folderVariable);
}

// An input method for m17n: k and n compose, Return and Ctrl+Return commit, Escape discards.
constexpr const char* syllables = R"((input-method t syllables)
(description "Two syllables")
(title "S")
(map
 (letter ("k" "か") ("n" "な"))
 (finish ((Return) (commit)) ((C-Return) (commit)))
 (cancel ((Escape) (delete @<))))
(state
 (init (letter (shift composing)))
 (composing (letter) (finish (shift init)) (cancel (shift init))))
)";

std::unique_ptr<driver::ChildProcess> startDaemon(const std::string& address) {
  driver::ChildProcess::Options options;
  // Without its panel, which would map windows and change settings.
  options.arguments = {
      "ibus-daemon",      "--replace",    "--panel=disable",     "--emoji-extension=disable",
      "--config=disable", "--cache=none", "--address=" + address};
  options.environment = ownEnvironment();
  options.standardError = desktopFolder() / "logs/ibus-daemon.err";
  options.standardOutput = desktopFolder() / "logs/ibus-daemon.out";
  return std::make_unique<driver::ChildProcess>(std::move(options));
}

}  // namespace

InputMethod::InputMethod(Preedit preedit) {
  // A killed daemon leaves its socket.
  static int daemons = 0;
  const std::string address =
      "unix:path=" + (desktopFolder() / "runtime/ibus-").string() + std::to_string(++daemons);
  const std::filesystem::path methods = std::filesystem::path(std::getenv("HOME")) / ".m17n.d";
  std::filesystem::create_directories(methods);
  writeFile(methods / "t-syllables.mim", syllables);
  daemon_ = startDaemon(address);
  waitUntil(
      [&] {
        if (!daemon_->running()) throw TestError("ibus-daemon: " + daemon_->errorText());
        try {
          bus_ = std::make_unique<driver::BusConnection>(address);
        } catch (const TestError&) {
          return false;
        }
        return bus_->nameHasOwner(daemonName);
      },
      "ibus answers");
  bus_->call({daemonName, daemonPath, "org.freedesktop.DBus.Properties", "Set"},
             g_variant_new("(ssv)", daemonName, "EmbedPreeditText",
                           g_variant_new_boolean(preedit == Preedit::inTheTextView)));
  useModule("ibus");
}

InputMethod::~InputMethod() {
  useModule(ownModule);
}

bool InputMethod::hasContext() {
  return !context().empty();
}

void InputMethod::useEngine(const std::string& name) {
  bus_->call({daemonName, daemonPath, daemonName, "SetGlobalEngine"},
             g_variant_new("(s)", name.c_str()));
}

std::string InputMethod::context() {
  const auto path = bus_->tryProperty(daemonName, daemonPath, daemonName, "CurrentInputContext");
  return path ? g_variant_get_string(path.get(), nullptr) : "";
}

}  // namespace navora
