#pragma once

#include <functional>
#include <memory>

#include "platform/ErrorView.h"

namespace navora {

// The overlay that covers the page after a failed load, in the current language.
class LoadFailureView {
 public:
  struct Actions {
    std::function<void()> retry;
    std::function<void()> openInBrowser;
  };

  using MakeView = std::function<std::unique_ptr<ErrorView>(const ErrorViewDescription&)>;

  // Makes the overlay, hidden. `makeView` is called again whenever the language changes.
  LoadFailureView(MakeView makeView, Actions actions);

  void show();
  void hide();

  // Rebuilds the overlay in the current language; it stays shown or hidden.
  void refreshLocale();

 private:
  std::unique_ptr<ErrorView> make();

  const MakeView makeView_;
  const Actions actions_;
  std::unique_ptr<ErrorView> view_;
};

}  // namespace navora
