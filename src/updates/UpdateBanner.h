#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/UpdateBannerView.h"

namespace navora {

class MainWindow;

// The texts and buttons of one state of the banner. Texts are functions, called again whenever the
// interface's language changes.
struct UpdateBannerPresentation {
  using Text = std::function<std::string()>;
  using Action = std::function<void()>;

  // Visible if and only if it has a title.
  struct Button {
    Text title;
    Action action;
  };

  Text heading;
  Text detail;
  // No bar if absent; indeterminate if negative; otherwise a fraction from 0 to 1.
  std::optional<double> progress;
  Button primary;
  Button secondary;
  Button tertiary;
  // The close button is visible if and only if this is set.
  Action close;
};

// The banner that shows updates to the user. Keeps the texts and actions of the current state. A
// press of a button runs its action and discards all actions of the state.
class UpdateBanner final : private UpdateBannerViewDelegate {
 public:
  using Text = UpdateBannerPresentation::Text;
  using Action = UpdateBannerPresentation::Action;

  // Becomes the view's delegate. The banner is hidden at first.
  explicit UpdateBanner(std::unique_ptr<UpdateBannerView> view);
  ~UpdateBanner() override;

  UpdateBanner(const UpdateBanner&) = delete;
  UpdateBanner& operator=(const UpdateBanner&) = delete;

  // Puts the banner over the window's content. Called once.
  void attach(MainWindow& window);

  // Replaces the state and shows the banner.
  void present(UpdateBannerPresentation presentation);
  // Sets the bar as UpdateBannerPresentation::progress does; ignored in a state without a bar.
  void setProgress(double value);
  // Adds the primary button "Перезапустить" to the current state.
  void setRetry(Action action);
  // Adds the secondary button "Закрыть" to the current state.
  void setClose(Action action);
  // Discards the actions without changing how the buttons look.
  void clearActions();
  // Discards the actions and disables the buttons until the next state.
  void disableActions();

  void hide();
  bool isHidden() const;
  // Announces the heading to assistive technology.
  void announce();
  // Sets every text again, in the current language.
  void refreshLocale();

 private:
  void bannerButtonPressed(UpdateBannerButton button) override;
  void setButton(UpdateBannerButton which, UpdateBannerPresentation::Button button);

  std::unique_ptr<UpdateBannerView> view_;
  UpdateBannerContent content_;
  Text heading_;
  Text detail_;
  std::map<UpdateBannerButton, Text> titles_;
  std::map<UpdateBannerButton, Action> actions_;
  bool hasProgress_ = false;
};

}  // namespace navora
