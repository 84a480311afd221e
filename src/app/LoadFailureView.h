#pragma once

#include <functional>
#include <memory>

#include "platform/ErrorView.h"
#include "platform/MainWindow.h"
#include "platform/Platform.h"

namespace navora {

// The overlay that covers the page when it could not be loaded, in the current language.
class LoadFailureView {
 public:
  struct Actions {
    std::function<void()> retry;
    std::function<void()> openInBrowser;
  };

  // Made hidden, over the content of `window`; both arguments must outlive this object.
  LoadFailureView(Platform& platform, MainWindow& window, Actions actions);

  void show();
  void hide();

  // Built anew in the language that is current now; stays shown or hidden.
  void refreshLocale();

 private:
  std::unique_ptr<ErrorView> make();

  Platform& platform_;
  MainWindow& window_;
  Actions actions_;
  std::unique_ptr<ErrorView> view_;
};

}  // namespace navora
