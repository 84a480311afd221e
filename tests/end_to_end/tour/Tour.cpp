#include "end_to_end/tour/Tour.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <utility>

#include "end_to_end/driver/Accessibility.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

constexpr const char* browserLink = "https://www.example.com/reading";

// The number of equal screenshots in a row after which the screen counts as finished.
constexpr int looksAtRest = 12;

// In pixels.
constexpr int panelIconSize = 22;
constexpr int notificationIconSize = 48;

std::string numbered(int step, const std::string& name) {
  std::ostringstream text;
  text << std::setw(2) << std::setfill('0') << step << "-" << name;
  return text.str();
}

// Returns the image whose size is nearest to `size`.
FakeStatusNotifierWatcher::Pixmap nearest(
    const std::vector<FakeStatusNotifierWatcher::Pixmap>& pixmaps, int size) {
  if (pixmaps.empty()) throw TestError("The status item has no icon");
  return *std::ranges::min_element(
      pixmaps, {}, [size](const auto& pixmap) { return std::abs(pixmap.width - size); });
}

// Converts ARGB, as the protocol sends it, to RGBA.
std::string rgba(const FakeStatusNotifierWatcher::Pixmap& pixmap) {
  std::string pixels;
  for (std::size_t at = 0; at + 3 < pixmap.bytes.size(); at += 4) {
    for (const std::size_t component : {1U, 2U, 3U, 0U})
      pixels += static_cast<char>(pixmap.bytes[at + component]);
  }
  return pixels;
}

}  // namespace

Tour::Tour(std::filesystem::path folder)
    : folder_(std::move(folder)),
      installation_(installed_.path(), installBuild(built_.path()), "1.0"),
      service_(ServiceProcess::Options{
          .arguments = {"--test-driver", "--updates", installation_.releases().string()}}),
      client_(service_.controlUrl()),
      application_(desktop_, service_.url(), {.executable = installation_.program()}),
      page_(desktop_, service_.controlUrl(),
            [this] { return application_.waitForMainWindow().content; }) {
  std::filesystem::remove_all(folder_);
  std::filesystem::create_directories(folder_);
}

void Tour::play() {
  application_.start();
  signIn();
  visitViews();
  captureNote();
  answerPageDialog();
  followForeignLinks();
  pullTheCable();
  hideAndShow();
  changeTheme();
  openMenus();
  openTrayMenu();
  postponeUpdate();
  openNotification();
  changeLanguage();
  captureInTheDark();
  std::cout << step_ << " screenshots in " << folder_.string() << std::endl;
}

void Tour::signIn() {
  page_.waitUntilTrue("location.pathname === '/login' && document.readyState === 'complete'");
  recordPage("login", "The window opens on the service's login page.");
  page_.type("[name=name]", "demo");
  page_.type("[name=password]", "demo\n");
  page_.waitUntilTrue(
      "location.pathname === '/' && document.querySelector('#captures > *') !== null",
      "the today view");
  recordPage("today", "Signed in: the today view with the notes.");
}

void Tour::visitViews() {
  showView("circles");
  recordPage("circles", "The circles with their rooms.");
  showView("calendar");
  recordPage("calendar", "The calendar.");
  showView("settings");
  recordPage("settings", "The settings, with the system's time zone.");
  showView("today");
}

void Tour::openPanel() {
  desktop_.keyboard().chord("Control+Shift+space");
  waitUntil(
      [&] {
        const auto editor =
            desktop_.accessibility().find({.role = "text", .name = {}}, application_.pid());
        return editor && editor->has(AccessibleState::focused);
      },
      "the capture panel is open");
}

void Tour::waitUntilPanelHidden() {
  waitUntil([&] { return !hasWidget("text", {}); }, "the capture panel is hidden");
}

void Tour::captureNote() {
  const std::string note = "Bread, coffee and a present for Ann";
  auto document = showDocument();
  const WindowId other = desktop_.display().activeWindow()->id;
  openPanel();
  record("capture", "The hot key opens the capture panel over any program.");
  desktop_.keyboard().type(note);
  waitUntil([&] { return editorText() == note; }, "the note is written");
  record("capture-written", "A note is written; Ctrl+Enter sends it.");
  desktop_.keyboard().chord("Control+Return");
  waitUntilPanelHidden();
  desktop_.display().waitUntilActive(other);
  page_.waitUntilTrue("document.querySelector('#captures').innerText.includes('" + note + "')",
                      "the note appears in the today view");
  record("captured", "The note is stored; the other program has the keyboard again.");
  document.reset();
  recordPage("noted", "The note in the today view.");
}

void Tour::captureInTheDark() {
  const auto document = showDocument();
  service_.stop();
  openPanel();
  desktop_.keyboard().type("Молоко\nХлеб\nКофе\nПозвонить Анне и спросить, когда она приедет");
  desktop_.keyboard().chord("Control+Return");
  const std::string text = "Нет связи с сервером. Черновик сохранён — попробуйте ещё раз.";
  desktop_.accessibility().waitFor({.role = "label", .name = text}, application_.pid());
  record("capture-offline", "The service is unreachable: the draft stays, in the page's look.");
}

void Tour::changeTheme() {
  const auto reload = [this](const std::string& theme) {
    client_.changeSettings({{"theme", theme}});
    page_.tryEvaluate("window.beforeReload = true; setTimeout(() => location.reload()); return 0");
    page_.waitUntilTrue("!window.beforeReload && document.querySelector('#captures > *') !== null",
                        "the today view in the theme \"" + theme + "\"");
  };
  reload("dark");
  recordPage("dark", "The dark theme, chosen in the settings.");
  reload("light");
}

void Tour::openTrayMenu() {
  const auto item = tray_.waitForItem();
  std::vector<std::string> arguments = iconArguments("tray", panelIconSize);
  for (const auto& entry : tray_.menu(item)) {
    if (entry.visible) arguments.push_back(entry.type == "separator" ? "" : entry.label);
  }
  const auto panel = showScenery(arguments);
  record("tray", "The tray icon and its menu, in a panel that shows status items.");
}

void Tour::openMenus() {
  desktop_.accessibility().waitFor({.role = "menu", .name = "Navora"}, application_.pid()).press();
  auto about = desktop_.accessibility().waitFor({.role = "menu item", .name = "About Navora"},
                                                application_.pid());
  record("menu", "The menus, with their keys.");
  about.press();
  desktop_.accessibility().waitFor({.role = "push button", .name = "Close"}, application_.pid());
  record("about", "The About panel.");
  desktop_.keyboard().chord("Escape");
  waitUntil([&] { return !hasWidget("push button", "Close"); }, "the About panel is closed");
}

void Tour::postponeUpdate() {
  installation_.release(built_.path(), "1.1");
  desktop_.accessibility().waitFor({.role = "menu", .name = "Navora"}, application_.pid()).press();
  desktop_.accessibility()
      .waitFor({.role = "menu item", .name = "Check for Updates…"}, application_.pid())
      .press();
  const auto later = desktop_.accessibility().waitFor(
      {.role = "push button", .name = "Remind Me in 1 Hour"}, application_.pid());
  record("update", "A newer version is offered; the user may install or postpone it.");
  later.press();
  waitUntil([&] { return !hasWidget("push button", "Remind Me in 1 Hour"); },
            "the offer is postponed");
}

void Tour::openNotification() {
  page_.evaluate(
      "const {circles} = await (await fetch('/api/circles')).json();"
      "await fetch(`/api/rooms/${circles[1].rooms[0].id}/messages`, {method: 'POST',"
      " headers: {'Content-Type': 'application/json'}, body: JSON.stringify({text: 'I am on my "
      "way'})});"
      "window.webkit.messageHandlers.navoraNotifications.postMessage('enable')");
  const auto shown = waitFor(
      [&]() -> std::optional<FakeNotificationDaemon::Notification> {
        // The note that was written before has one of its own.
        for (const auto& notification : notificationDaemon_.notifications())
          if (notification.body.find("in Exhibition") != std::string::npos) return notification;
        return std::nullopt;
      },
      "a notification of the answer is shown");
  {
    std::vector<std::string> arguments = iconArguments("notification", notificationIconSize);
    arguments.insert(arguments.end(), {shown.summary, shown.body});
    const auto bubble = showScenery(arguments);
    record("notification", "A message in a circle raises a notification: “" + shown.body + "”.");
  }
  notificationDaemon_.click(shown.id);
  page_.waitUntilTrue("location.hash.startsWith('#circles?room=')", "the room is shown");
  recordPage("notification-opened", "A click on it opens the room with the message.");
  showView("today");
}

void Tour::answerPageDialog() {
  page_.click("#captures button[aria-label='Delete note']");
  auto cancel = desktop_.accessibility().waitFor({.role = "push button", .name = "Cancel"},
                                                 application_.pid());
  record("confirm", "The page asks before it deletes a note: a native dialog.");
  cancel.press();
  waitUntil([&] { return !hasWidget("push button", "Cancel"); }, "the dialog is closed");
}

void Tour::followForeignLinks() {
  page_.evaluate(
      "const link = document.createElement('a'); link.id = 'tour-link'; link.textContent = 'A "
      "foreign link';"
      "link.href = '" +
      std::string(browserLink) + "'; document.querySelector('.view-header').append(link)");
  page_.click("#tour-link");
  const auto opened = desktop_.openedUrls().waitForFirst();
  recordPage("foreign-link",
             "A foreign link opens in the browser (" + opened + "); the window keeps its page.");

  page_.evaluate("location.href = '" + std::string(browserLink) +
                 "'; document.querySelector('#tour-link').remove()");
  page_.waitUntilTrue("location.pathname === '/'");
  recordPage("foreign-refused", "A script that navigates to a foreign page is refused.");
}

void Tour::pullTheCable() {
  page_.evaluate(
      "(async () => { try { for (;;) await fetch('/login', {cache: 'no-store'}); } catch { "
      "location.reload(); } "
      "})()");
  service_.stop();
  desktop_.accessibility().waitFor({.role = "push button", .name = "Try Again"},
                                   application_.pid());
  record("unreachable", "The service is unreachable: the window says so and offers to retry.");
  service_.start();
  desktop_.keyboard().chord("Return");
  page_.waitUntilTrue("document.querySelector('#captures > *') !== null",
                      "the today view is shown again");
  recordPage("retried", "Return retries: the page is shown again.");
}

void Tour::hideAndShow() {
  desktop_.display().close(application_.waitForMainWindow().id);
  application_.waitUntilMainWindowHidden();
  record("hidden", "Closing hides the window; the application keeps running.");
  application_.run({});
  desktop_.display().waitUntilActive(application_.waitForMainWindow().id);
  recordPage("shown-again", "A second launch shows it again.");
}

void Tour::changeLanguage() {
  client_.changeSettings({{"locale", "ru"}, {"theme", "dark"}});
  page_.tryEvaluate("setTimeout(() => location.reload()); return true");
  waitUntil([&] { return application_.waitForMainWindow().title == "Навора"; },
            "the window is in Russian");
  page_.waitUntilTrue("document.querySelector('#captures > *') !== null", "the today view");
  recordPage("russian-dark",
             "The window follows the language and the theme of the user's settings.");
}

void Tour::showView(const std::string& name) {
  page_.click("a[href='#" + name + "']");
  page_.waitUntilTrue("location.hash === '#" + name + "'", "the view " + name);
}

bool Tour::hasWidget(const std::string& role, const std::string& name) {
  return desktop_.accessibility()
      .find({.role = role, .name = name}, application_.pid())
      .has_value();
}

std::unique_ptr<ChildProcess> Tour::showScenery(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), NAVORA_TOUR_SCENERY);
  auto scenery = desktop_.start(std::move(arguments));
  scenery->waitForLine("shown");
  return scenery;
}

std::vector<std::string> Tour::iconArguments(const std::string& kind, int size) {
  const auto icon = nearest(tray_.pixmaps(tray_.waitForItem()), size);
  const std::filesystem::path file = desktop_.root() / (kind + "-icon");
  writeFile(file, rgba(icon));
  return {kind, file, std::to_string(icon.width)};
}

std::unique_ptr<ChildProcess> Tour::showDocument() {
  auto document = showScenery({"document"});
  const auto isDocument = [](const WindowInfo& window) { return window.title == "Letter to Ann"; };
  const WindowInfo window = desktop_.display().waitForWindow(isDocument, "the document is shown");
  desktop_.display().waitUntilActive(window.id);
  return document;
}

std::string Tour::editorText() {
  const auto editor =
      desktop_.accessibility().find({.role = "text", .name = {}}, application_.pid());
  return editor ? editor->text() : std::string();
}

void Tour::recordPage(const std::string& name, const std::string& description) {
  page_.waitUntilPainted();
  record(name, description);
}

void Tour::record(const std::string& name, const std::string& description) {
  const std::string file = numbered(++step_, name) + ".png";
  auto last = desktop_.display().screenshot();
  int same = 0;
  waitUntil(
      [&] {
        auto next = desktop_.display().screenshot();
        same = next.differingPixels(std::exchange(last, next)) == 0 ? same + 1 : 0;
        return same >= looksAtRest;
      },
      "the screen has stopped changing");
  last.save(folder_ / file);
  std::cout << file << "  " << description << std::endl;
}

}  // namespace navora::driver
