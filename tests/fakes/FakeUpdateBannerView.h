#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/UpdateBannerView.h"
#include "support/FatalError.h"

namespace navora {

// A banner that shows nothing to anybody but the test.
class FakeUpdateBannerView final : public UpdateBannerView {
 public:
  // What there is to see, kept apart from the view, which is its banner's.
  struct Screen {
    UpdateBannerViewDelegate* delegate = nullptr;
    MainWindow* window = nullptr;
    bool hidden = true;
    UpdateBannerContent content;
    UpdateBannerProgress progress;
    std::vector<std::pair<std::string, AnnouncementPriority>> announcements;

    const UpdateBannerContent::Button& button(UpdateBannerButton which) const {
      return content.button(which);
    }
    bool canPress(UpdateBannerButton which) const {
      return !hidden && button(which).visible && button(which).enabled;
    }
    // The user presses it, as only a button that is there can be pressed.
    void press(UpdateBannerButton which) const {
      if (!canPress(which)) fatalError("There is no such button", "FakeUpdateBannerView", __LINE__);
      delegate->bannerButtonPressed(which);
    }
  };

  explicit FakeUpdateBannerView(Screen& screen) : screen_(screen) {}

  void setDelegate(UpdateBannerViewDelegate* delegate) override { screen_.delegate = delegate; }
  void attach(MainWindow& window) override { screen_.window = &window; }
  void setHidden(bool hidden) override { screen_.hidden = hidden; }
  bool isHidden() const override { return screen_.hidden; }
  void setContent(const UpdateBannerContent& content) override { screen_.content = content; }
  void setProgress(UpdateBannerProgress progress) override { screen_.progress = progress; }
  void announce(const std::string& text, AnnouncementPriority priority) override {
    screen_.announcements.emplace_back(text, priority);
  }

 private:
  Screen& screen_;
};

}  // namespace navora
