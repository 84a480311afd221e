#pragma once

#include <filesystem>
#include <string>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceClient.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/UpdatableInstallation.h"
#include "end_to_end/driver/VirtualDesktop.h"
#include "tests/support/Files.h"

namespace navora::driver {

// The real application on a desktop, a bus and a service of its own. A step that does not come
// about ends the tour with a TestError.
class Tour {
 public:
  // Screenshots go into `folder`; those of an earlier tour are removed.
  explicit Tour(std::filesystem::path folder);

  void play();

 private:
  void signIn();
  void visitViews();
  void captureNote();
  void captureInTheDark();
  // With the hot key, from another program, and waits until the panel takes keys.
  void openPanel();
  void waitUntilPanelHidden();
  void openMenus();
  void openNotification();
  void postponeUpdate();
  void answerPageDialog();
  void followForeignLinks();
  void pullTheCable();
  void hideAndShow();
  void changeLanguage();

  void showView(const std::string& name);
  bool hasWidget(const std::string& role, const std::string& name);
  // Saves the screen as it is and says what it shows.
  void record(const std::string& name, const std::string& description);

  std::filesystem::path folder_;
  int step_ = 0;
  TemporaryDirectory built_{"navora-built"};
  TemporaryDirectory installed_{"navora-installed"};
  UpdatableInstallation installation_;
  VirtualDesktop desktop_;
  FakeNotificationDaemon notificationDaemon_{desktop_.sessionBusAddress()};
  ServiceProcess service_;
  ServiceClient client_;
  ApplicationProcess application_;
  PageDriver page_;
};

}  // namespace navora::driver
