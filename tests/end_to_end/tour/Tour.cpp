#include "end_to_end/tour/Tour.h"

#include <chrono>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <utility>

#include "end_to_end/driver/Accessibility.h"
#include "end_to_end/driver/OtherWindow.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

constexpr const char* browserLink = "https://www.example.com/reading";

// How many times in a row the screen must look the same to count as finished.
constexpr int looksAtRest = 12;

std::string numbered(int step, const std::string& name) {
  std::ostringstream text;
  text << std::setw(2) << std::setfill('0') << step << "-" << name;
  return text.str();
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
  openMenus();
  postponeUpdate();
  openNotification();
  changeLanguage();
  captureInTheDark();
  std::cout << step_ << " screenshots in " << folder_.string() << std::endl;
}

void Tour::signIn() {
  page_.waitUntilTrue("location.pathname === '/login' && document.readyState === 'complete'");
  record("login", "The window opens on the service's login page.");
  page_.type("[name=name]", "demo");
  page_.type("[name=password]", "demo\n");
  page_.waitUntilTrue(
      "location.pathname === '/' && document.querySelector('#captures > *') !== null",
      "the today view");
  record("today", "Signed in: the today view with the notes.");
}

void Tour::visitViews() {
  showView("circles");
  record("circles", "The circles with their rooms.");
  showView("calendar");
  record("calendar", "The calendar.");
  showView("settings");
  record("settings", "The settings, with the system's time zone.");
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
  waitUntil([&] { return !hasWidget("text", {}); }, "the capture panel is gone");
}

void Tour::captureNote() {
  const std::string note = "Bread, coffee and a present for Ann";
  const OtherWindow other(desktop_.display());
  openPanel();
  record("capture", "The hot key opens the capture panel over any program.");
  desktop_.keyboard().type(note);
  record("capture-written", "A note is written; Ctrl+Enter sends it.");
  desktop_.keyboard().chord("Control+Return");
  waitUntilPanelHidden();
  desktop_.display().waitUntilActive(other.id());
  page_.waitUntilTrue("document.querySelector('#captures').innerText.includes('" + note + "')",
                      "the note appears in the today view");
  record("captured", "The note is stored, the other program has the keyboard back.");
}

void Tour::captureInTheDark() {
  const OtherWindow other(desktop_.display());
  service_.stop();
  openPanel();
  desktop_.keyboard().type("Молоко\nХлеб\nКофе\nПозвонить Анне и спросить, когда она приедет");
  desktop_.keyboard().chord("Control+Return");
  const std::string text = "Нет связи с сервером. Черновик сохранён — попробуйте ещё раз.";
  desktop_.accessibility().waitFor({.role = "label", .name = text}, application_.pid());
  record("capture-offline", "The service is unreachable: the draft stays, in the page's look.");
}

void Tour::openMenus() {
  desktop_.accessibility().waitFor({.role = "menu", .name = "Navora"}, application_.pid()).press();
  auto about = desktop_.accessibility().waitFor({.role = "menu item", .name = "About Navora"},
                                                application_.pid());
  record("menu", "The menus, with their keys.");
  about.press();
  desktop_.accessibility().waitFor({.role = "push button", .name = "Close"}, application_.pid());
  record("about", "What the application is.");
  desktop_.keyboard().chord("Escape");
  waitUntil([&] { return !hasWidget("push button", "Close"); }, "the About panel is gone");
}

void Tour::postponeUpdate() {
  installation_.release(built_.path(), "1.1");
  desktop_.accessibility().waitFor({.role = "menu", .name = "Navora"}, application_.pid()).press();
  desktop_.accessibility()
      .waitFor({.role = "menu item", .name = "Check for Updates…"}, application_.pid())
      .press();
  const auto later = desktop_.accessibility().waitFor(
      {.role = "push button", .name = "Remind me in 1 hour"}, application_.pid());
  record("update", "There is a newer version, which waits until the user wants it.");
  later.press();
  waitUntil([&] { return !hasWidget("push button", "Remind me in 1 hour"); },
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
  notificationDaemon_.click(shown.id);
  page_.waitUntilTrue("location.hash.startsWith('#circles?room=')", "the room is shown");
  record("notification", "A notification (“" + shown.body + "”) leads to its room.");
  showView("today");
}

void Tour::answerPageDialog() {
  page_.click("#captures button[aria-label='Delete note']");
  auto cancel = desktop_.accessibility().waitFor({.role = "push button", .name = "Cancel"},
                                                 application_.pid());
  record("confirm", "The page asks before it deletes a note: a native dialog.");
  cancel.press();
  waitUntil([&] { return !hasWidget("push button", "Cancel"); }, "the dialog goes away");
}

void Tour::followForeignLinks() {
  page_.evaluate(
      "const link = document.createElement('a'); link.id = 'tour-link'; link.textContent = 'A "
      "foreign link';"
      "link.href = '" +
      std::string(browserLink) + "'; document.querySelector('.view-header').append(link)");
  page_.click("#tour-link");
  const auto opened = desktop_.openedUrls().waitForFirst();
  record("foreign-link",
         "A foreign link goes to the browser (" + opened + "); the window stays where it was.");

  page_.evaluate("location.href = '" + std::string(browserLink) +
                 "'; document.querySelector('#tour-link').remove()");
  page_.waitUntilTrue("location.pathname === '/'");
  record("foreign-refused", "A script that leads the window to a foreign page is refused.");
}

void Tour::pullTheCable() {
  page_.evaluate(
      "(async () => { try { for (;;) await fetch('/login', {cache: 'no-store'}); } catch { "
      "location.reload(); } "
      "})()");
  service_.stop();
  desktop_.accessibility().waitFor({.role = "push button", .name = "Try again"},
                                   application_.pid());
  record("unreachable", "The service is unreachable: the window says so and offers to retry.");
  service_.start();
  desktop_.keyboard().chord("Return");
  page_.waitUntilTrue("document.querySelector('#captures > *') !== null", "the today view is back");
  record("retried", "Return retries: the page is back.");
}

void Tour::hideAndShow() {
  desktop_.display().close(application_.waitForMainWindow().id);
  application_.waitUntilMainWindowHidden();
  record("hidden", "Closing hides the window; the application goes on.");
  application_.run({});
  desktop_.display().waitUntilActive(application_.waitForMainWindow().id);
  record("shown-again", "A second launch shows it again.");
}

void Tour::changeLanguage() {
  client_.changeSettings({{"locale", "ru"}, {"theme", "dark"}});
  page_.tryEvaluate("setTimeout(() => location.reload()); return true");
  waitUntil([&] { return application_.waitForMainWindow().title == "Навора"; },
            "the window is in Russian");
  page_.waitUntilTrue("document.querySelector('#captures > *') !== null", "the today view");
  record("russian-dark", "The user's language and theme on the service are the window's, too.");
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

void Tour::record(const std::string& name, const std::string& description) {
  const std::string file = numbered(++step_, name) + ".png";
  // What the page has drawn reaches the screen a moment later.
  page_.tryEvaluate(
      "await new Promise((drawn) => requestAnimationFrame(() => requestAnimationFrame(drawn)))",
      std::chrono::seconds(1));
  auto last = desktop_.display().screenshot();
  int same = 0;
  waitUntil(
      [&] {
        auto next = desktop_.display().screenshot();
        same = next.differingPixels(std::exchange(last, next)) == 0 ? same + 1 : 0;
        return same >= looksAtRest;
      },
      "the screen comes to rest");
  last.save(folder_ / file);
  std::cout << file << "  " << description << std::endl;
}

}  // namespace navora::driver
