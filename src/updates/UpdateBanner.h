#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/UpdateBannerView.h"

namespace navora {

class MainWindow;

// What one state of the banner says and offers. Texts are functions, called each time that they are
// shown, so that the banner follows the interface's language.
struct UpdateBannerPresentation {
  using Text = std::function<std::string()>;
  using Action = std::function<void()>;

  // Shown exactly when it has a title.
  struct Button {
    Text title;
    Action action;
  };

  Text heading;
  Text detail;
  // None for no bar, negative for an indeterminate one, otherwise from 0 to 1.
  std::optional<double> progress;
  Button primary;
  Button secondary;
  Button tertiary;
  // The close button is shown exactly when there is this.
  Action close;
};

// The banner through which updates talk to the user: keeps the texts and actions of the current
// state and decides nothing else. One press runs at most one action, and after it the state has
// none left.
class UpdateBanner final : private UpdateBannerViewDelegate {
 public:
  using Text = UpdateBannerPresentation::Text;
  using Action = UpdateBannerPresentation::Action;

  // Becomes the view's delegate. The banner is hidden at first.
  explicit UpdateBanner(std::unique_ptr<UpdateBannerView> view);
  ~UpdateBanner() override;

  UpdateBanner(const UpdateBanner&) = delete;
  UpdateBanner& operator=(const UpdateBanner&) = delete;

  // Puts it over the window's content; to be called once.
  void attach(MainWindow& window);

  // Replaces the state and shows the banner.
  void present(UpdateBannerPresentation presentation);
  // Does not show a bar that the state does not have.
  void setProgress(double value);
  // The current state gets a primary button "Перезапустить", or a secondary one "Закрыть".
  void setRetry(Action action);
  void setClose(Action action);
  // The buttons stay as they are.
  void clearActions();
  // The buttons stay visible, but do nothing until the next state.
  void disableActions();

  void hide();
  bool isHidden() const;
  // Reads the heading aloud to those who use a screen reader.
  void announce();
  // Shows every text in the language that is current now.
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
