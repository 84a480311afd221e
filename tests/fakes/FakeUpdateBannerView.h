#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/UpdateBannerView.h"
#include "support/FatalError.h"

namespace navora {

// A banner whose contents the test reads.
class FakeUpdateBannerView final : public UpdateBannerView {
 public:
  // The visible state; separate from the view, which its controller owns.
  struct Screen {
    UpdateBannerViewDelegate* delegate = nullptr;
    MainWindow* window = nullptr;
    bool hidden = true;
    UpdateBannerContent content;
    UpdateBannerProgress progress;
    std::vector<std::string> announcements;

    const UpdateBannerContent::Button& button(UpdateBannerButton which) const {
      return content.button(which);
    }
    bool canPress(UpdateBannerButton which) const {
      return !hidden && button(which).visible && button(which).enabled;
    }
    // Acts as the user pressing the button. A fatal error if it cannot be pressed.
    void press(UpdateBannerButton which) const {
      if (!canPress(which))
        fatalError("The button cannot be pressed", "FakeUpdateBannerView", __LINE__);
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
  void announce(const std::string& text) override { screen_.announcements.push_back(text); }

 private:
  Screen& screen_;
};

}  // namespace navora
