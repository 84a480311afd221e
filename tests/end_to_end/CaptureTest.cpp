#include "end_to_end/CaptureTest.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/Files.h"

namespace navora::driver {

void CaptureTest::prepare() {
  const auto folder = desktop().configHome() / "navora";
  std::filesystem::create_directories(folder);
  writeFile(folder / "defaults.json", R"({"desktopNotificationsEnabled": false})");
}

void CaptureTest::SetUp() {
  EndToEndTest::SetUp();
  if (HasFatalFailure()) return;
  if (signsIn()) signIn();
  other_.emplace(desktop().display());
  serviceClient().clearRequests();
}

std::optional<WindowInfo> CaptureTest::panel() {
  const auto windows = application().windows();
  const auto found = std::ranges::find_if(windows, [](const WindowInfo& window) {
    return window.hasType("_NET_WM_WINDOW_TYPE_UTILITY");
  });
  return found == windows.end() ? std::nullopt : std::optional(*found);
}

WindowInfo CaptureTest::openPanel() {
  desktop().keyboard().chord(hotKey);
  const auto opened = waitFor(
      [&]() -> std::optional<WindowInfo> {
        const auto window = panel();
        return window && window->active ? window : std::nullopt;
      },
      "the capture panel is open", defaultTimeout(),
      [&] { return desktop().display().describeWindows(); });
  waitUntil([&] { return widget("text").has(AccessibleState::focused); },
            "the panel's editor has the focus");
  return opened;
}

void CaptureTest::waitUntilPanelHidden() {
  waitUntil([&] { return !panel(); }, "the capture panel is hidden", defaultTimeout(),
            [&] { return desktop().accessibility().describe(application().pid()); });
}

std::string CaptureTest::draft() {
  return widget("text").text();
}

void CaptureTest::waitForDraft(const std::string& text) {
  std::string last;
  waitUntil([&] { return (last = draft()) == text; }, "the draft is \"" + text + "\"",
            defaultTimeout(), [&] { return "It is \"" + last + "\""; });
}

void CaptureTest::typeDraft(const std::string& text, const std::string& draft) {
  desktop().keyboard().type(text);
  waitForDraft(draft);
}

std::vector<std::string> CaptureTest::labels() {
  std::vector<std::string> texts;
  for (const auto& label :
       desktop().accessibility().findAll({.role = "label"}, application().pid()))
    texts.push_back(label.text());
  return texts;
}

void CaptureTest::waitForMessage(const std::string& text, std::chrono::milliseconds timeout) {
  waitUntil([&] { return std::ranges::count(labels(), text) > 0; },
            "the panel says \"" + text + "\"", timeout,
            [&] { return desktop().accessibility().describe(application().pid()); });
}

bool CaptureTest::isEditable() {
  return widget("text").has(AccessibleState::editable);
}

void CaptureTest::sendNote(const std::string& text) {
  openPanel();
  typeDraft(text);
  desktop().keyboard().chord(sendKey);
}

std::vector<std::string> CaptureTest::storedNotes(const std::string& account) {
  std::vector<std::string> notes;
  for (const Json& note : serviceClient().captures(account)) {
    if (!note.at("idempotencyKey").is_null()) notes.push_back(note.at("raw"));
  }
  return notes;
}

void CaptureTest::waitForStoredNotes(const std::vector<std::string>& notes) {
  waitUntil([&] { return storedNotes() == notes; }, "the service holds the notes", defaultTimeout(),
            [&] { return serviceClient().captures().dump(2); });
}

}  // namespace navora::driver
