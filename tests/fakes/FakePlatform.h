#pragma once

#include <map>
#include <memory>
#include <string>

#include "fakes/EventLog.h"
#include "fakes/FakeApplication.h"
#include "fakes/FakeBackgroundQueue.h"
#include "fakes/FakeCapturePanelView.h"
#include "fakes/FakeDialogs.h"
#include "fakes/FakeErrorView.h"
#include "fakes/FakeFileReplacement.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/FakeHttpSession.h"
#include "fakes/FakeImaging.h"
#include "fakes/FakeMainQueue.h"
#include "fakes/FakeMainWindow.h"
#include "fakes/FakeNotificationCenter.h"
#include "fakes/FakePrivateFile.h"
#include "fakes/FakeResources.h"
#include "fakes/FakeStatusItem.h"
#include "fakes/FakeSystem.h"
#include "fakes/FakeUpdateBannerView.h"
#include "fakes/FakeUpdater.h"
#include "fakes/FakeWebView.h"
#include "fakes/FakeWorkspace.h"
#include "platform/MemoryUserDefaults.h"
#include "platform/Platform.h"

namespace navora {

// A host without a desktop: its platform interfaces are fakes that share one log. The accessors
// return the fakes; for objects created by the make functions the last one, and it is a fatal error
// if there is none.
class FakePlatform final : public Platform {
 public:
  EventLog& log() { return log_; }
  FakeMainWindow& window() const;
  FakeWebView& webView() const;
  FakeErrorView& errorView() const;
  FakeCapturePanelView& capturePanel() const;
  FakeStatusItem& statusItem() const;
  FakeCapturePanelView::Desktop& captureDesktop() { return captureDesktop_; }
  // Returns the disk that the private file of this name is on.
  FakePrivateFile::Disk& disk(const std::string& name);
  FakeHttpSession::Network& network() { return *network_; }
  FakeUpdateBannerView::Screen& updateBanner() { return updateBanner_; }
  FakeUpdater::Session& updater() { return updater_; }
  FakeDisk& disk() { return disk_; }

  FakeApplication& application() override { return application_; }
  FakeBackgroundQueue& backgroundQueue() override { return backgroundQueue_; }
  FakeDialogs& dialogs() override { return dialogs_; }
  FakeHotKeys& hotKeys() override { return hotKeys_; }
  FakeImaging& imaging() override { return imaging_; }
  FakeMainQueue& mainQueue() override { return mainQueue_; }
  FakeNotificationCenter& notificationCenter() override { return notificationCenter_; }
  FakeResources& resources() override { return resources_; }
  FakeSystem& system() override { return system_; }
  MemoryUserDefaults& userDefaults() override { return userDefaults_; }
  FakeWorkspace& workspace() override { return workspace_; }
  DesktopWording wording() const override { return {"Уведомления запрещены", "Новее нет"}; }

  std::shared_ptr<MainWindow> makeMainWindow(const MainWindowDescription& description,
                                             MainWindowDelegate& delegate) override;
  std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) override;
  std::unique_ptr<ErrorView> makeErrorView(MainWindow& window,
                                           const ErrorViewDescription& description) override;
  std::unique_ptr<CapturePanelView> makeCapturePanel(Size contentSize,
                                                     CapturePanelDelegate& delegate) override;
  std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description,
                                             MenuDelegate& delegate) override;
  std::unique_ptr<UpdateBannerView> makeUpdateBannerView() override;
  std::unique_ptr<Updater> makeUpdater(UpdaterUserDriver& userDriver,
                                       UpdaterDelegate& delegate) override;
  std::unique_ptr<PrivateFile> makePrivateFile(const std::string& name) override;
  std::unique_ptr<HttpSession> makeHttpSession(
      const HttpSessionConfiguration& configuration) override;
  Expected<std::unique_ptr<FileReplacement>, PlatformError> makeFileReplacement(
      const std::filesystem::path& destination) override {
    return disk_.replace(destination);
  }

 private:
  EventLog log_;
  FakeApplication application_{log_};
  FakeBackgroundQueue backgroundQueue_;
  FakeDialogs dialogs_{log_};
  FakeHotKeys hotKeys_{log_};
  FakeImaging imaging_;
  FakeMainQueue mainQueue_;
  FakeNotificationCenter notificationCenter_;
  FakeResources resources_;
  FakeSystem system_{log_};
  MemoryUserDefaults userDefaults_;
  FakeWorkspace workspace_{log_};
  FakeCapturePanelView::Desktop captureDesktop_;
  FakeUpdateBannerView::Screen updateBanner_;
  FakeUpdater::Session updater_{log_};
  FakeDisk disk_{log_};
  FakeStatusItem* statusItem_ = nullptr;
  std::map<std::string, std::shared_ptr<FakePrivateFile::Disk>> disks_;
  std::shared_ptr<FakeHttpSession::Network> network_ = std::make_shared<FakeHttpSession::Network>();
  std::weak_ptr<FakeMainWindow> window_;
  std::weak_ptr<FakeWebView> webView_;
};

}  // namespace navora
