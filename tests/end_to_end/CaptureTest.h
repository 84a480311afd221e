#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "end_to_end/driver/EndToEndTest.h"
#include "end_to_end/driver/OtherWindow.h"

namespace navora::driver {

// Where a note is posted, and the panel's messages about failures.
inline constexpr const char* capturesPath = "/api/captures";
inline constexpr const char* offlineText =
    "Can’t reach the server. Your draft is safe — try again.";
inline constexpr const char* sendAgainText =
    "The server didn’t confirm that the note was saved. Send it again.";

// A signed-in user who is working in another program.
class CaptureTest : public EndToEndTest {
 protected:
  static constexpr const char* hotKey = "Control+Shift+space";
  static constexpr const char* sendKey = "Control+Return";

  // Turns off the notification poll, which sends some of the same requests.
  void prepare() override;
  void SetUp() override;
  // Returns whether SetUp() signs in.
  virtual bool signsIn() const { return true; }

  std::optional<WindowInfo> panel();
  // Opens the panel with the hot key and waits until its editor has the focus.
  WindowInfo openPanel();
  void waitUntilPanelHidden();
  // Returns the text in the panel's editor.
  std::string draft();
  void waitForDraft(const std::string& text);
  // Types into the panel and waits until its text is `draft`, or `text` if the panel was empty.
  void typeDraft(const std::string& text) { typeDraft(text, text); }
  void typeDraft(const std::string& text, const std::string& draft);
  std::vector<std::string> labels();
  void waitForMessage(const std::string& text,
                      std::chrono::milliseconds timeout = defaultTimeout());
  bool isEditable();
  // Opens the panel, types a note and sends it.
  void sendNote(const std::string& text);

  // Returns the texts of the account's notes without the sample notes.
  std::vector<std::string> storedNotes(const std::string& account = {});
  void waitForStoredNotes(const std::vector<std::string>& notes);
  std::vector<RecordedRequest> posts() { return serviceClient().requests("POST", capturesPath); }

  // The file that holds the draft while it is not sent.
  std::filesystem::path draftFile() { return desktop().dataHome() / "navora/capture-draft.json"; }
  OtherWindow& other() { return *other_; }

 private:
  std::optional<OtherWindow> other_;
};

}  // namespace navora::driver
