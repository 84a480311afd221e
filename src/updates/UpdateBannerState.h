#pragma once

#include <string>
#include <variant>

#include "updates/UpdateBanner.h"

namespace navora {

// The states in which the banner shows an update, each with the actions that are valid in it.
struct UpdateBannerState {
  using Text = UpdateBannerPresentation::Text;
  using Action = UpdateBannerPresentation::Action;

  struct Checking {
    Action cancel;
  };
  // The available version cannot be installed by the updater.
  struct InformationOnly {
    Action learnMore;
    Action later;
  };
  struct Offer {
    std::string displayVersion;
    Action install;
    Action postponeByHour;
    Action ignore;
    Action postponeUntilTomorrow;
  };
  // The update was downloaded earlier.
  struct Resumed {
    std::string displayVersion;
    Action install;
    Action later;
  };
  struct Downloading {
    Action cancel;
  };
  struct Extracting {};
  struct Ready {
    Action install;
    Action later;
  };
  // The application must not be restarted now; `message` says why.
  struct Blocked {
    std::string message;
    Action tryAgain;
    Action later;
  };
  struct Installing {};
  struct UpToDate {
    // The host's text, which names the desktop.
    Text heading;
    Action close;
  };
  struct Failed {
    Action close;
  };

  using Value = std::variant<Checking, InformationOnly, Offer, Resumed, Downloading, Extracting,
                             Ready, Blocked, Installing, UpToDate, Failed>;

  // Returns the texts and buttons of a state.
  static UpdateBannerPresentation present(Value state);
};

}  // namespace navora
