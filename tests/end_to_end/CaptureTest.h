#pragma once

#include <optional>
#include <string>
#include <vector>

#include "end_to_end/driver/EndToEndTest.h"
#include "end_to_end/driver/OtherWindow.h"

namespace navora::driver {

// The application with a user who is signed in and works in another program.
class CaptureTest : public EndToEndTest {
 protected:
  static constexpr const char* hotKey = "Control+Shift+space";
  static constexpr const char* sendKey = "Control+Return";

  // The poll for notifications asks the service some of the same questions: here it is off.
  void prepare() override;
  void SetUp() override;
  // Whether the test's user signs in first.
  virtual bool signsIn() const { return true; }

  std::optional<WindowInfo> panel();
  // With the hot key, and waits until the panel takes keys.
  WindowInfo openPanel();
  void waitUntilPanelHidden();
  // What is written in the panel, and its message.
  std::string draft();
  void waitForDraft(const std::string& text);
  std::vector<std::string> labels();
  void waitForMessage(const std::string& text,
                      std::chrono::milliseconds timeout = defaultTimeout());
  bool isEditable();
  // Opens the panel, types and sends.
  void sendNote(const std::string& text);

  // The texts of the account's notes that did not come with the service.
  std::vector<std::string> storedNotes(const std::string& account = {});
  void waitForStoredNotes(const std::vector<std::string>& notes);
  std::vector<RecordedRequest> posts() { return serviceClient().requests("POST", "/api/captures"); }

  OtherWindow& other() { return *other_; }

 private:
  std::optional<OtherWindow> other_;
};

}  // namespace navora::driver
