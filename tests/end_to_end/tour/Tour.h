#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "end_to_end/driver/FakeStatusNotifierWatcher.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceClient.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/UpdatableInstallation.h"
#include "end_to_end/driver/VirtualDesktop.h"
#include "tests/support/Files.h"

namespace navora::driver {

// Plays the tour: the application on a virtual desktop with a service of its own. A step that fails
// ends the tour with TestError.
class Tour {
 public:
  // Screenshots are saved in `folder`, whose contents are deleted first.
  explicit Tour(std::filesystem::path folder);

  void play();

 private:
  void signIn();
  void visitViews();
  void captureNote();
  void captureInTheDark();
  // Opens the capture panel with the hot key and waits until its editor has the focus.
  void openPanel();
  void waitUntilPanelHidden();
  void changeTheme();
  void openMenus();
  void openTrayMenu();
  void openNotification();
  void postponeUpdate();
  void answerPageDialog();
  void followForeignLinks();
  void pullTheCable();
  void hideAndShow();
  void changeLanguage();

  void showView(const std::string& name);
  bool hasWidget(const std::string& role, const std::string& name);
  // Starts navora-tour-scenery and waits until its window is shown; destroying the result hides it.
  std::unique_ptr<ChildProcess> showScenery(std::vector<std::string> arguments);
  // Shows another program's window and waits until it is active.
  std::unique_ptr<ChildProcess> showDocument();
  // Returns the first arguments of navora-tour-scenery, with the status item's icon.
  std::vector<std::string> iconArguments(const std::string& kind, int size);
  // Returns the text in the capture panel's editor.
  std::string editorText();
  // Saves the screen, once it has stopped changing, and prints what it shows.
  void record(const std::string& name, const std::string& description);

  // Does the same once the page has been painted.
  void recordPage(const std::string& name, const std::string& description);

  std::filesystem::path folder_;
  int step_ = 0;
  TemporaryDirectory built_{"navora-built"};
  TemporaryDirectory installed_{"navora-installed"};
  UpdatableInstallation installation_;
  VirtualDesktop desktop_;
  FakeNotificationDaemon notificationDaemon_{desktop_.sessionBusAddress()};
  FakeStatusNotifierWatcher tray_{desktop_.sessionBusAddress()};
  ServiceProcess service_;
  ServiceClient client_;
  ApplicationProcess application_;
  PageDriver page_;
};

}  // namespace navora::driver
