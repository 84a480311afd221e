#pragma once

#include <functional>
#include <string>
#include <variant>

#include "updates/UpdateBanner.h"

namespace navora {

// Those texts about updates that name the machine, in the language that is current when they are
// asked for.
struct DesktopUpdatesWording {
  std::function<std::string()> upToDate;
};

// The states that the user sees an update in, each with what the user can do in it.
struct UpdateBannerState {
  using Action = UpdateBannerPresentation::Action;

  struct Checking {
    Action cancel;
  };
  // There is a version that cannot be installed from here.
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
  // The application must not be restarted now; the message says why.
  struct Blocked {
    std::string message;
    Action tryAgain;
    Action later;
  };
  struct Installing {};
  struct UpToDate {
    Action close;
  };
  struct Failed {
    Action close;
  };

  using Value = std::variant<Checking, InformationOnly, Offer, Resumed, Downloading, Extracting,
                             Ready, Blocked, Installing, UpToDate, Failed>;

  static UpdateBannerPresentation present(Value state, const DesktopUpdatesWording& wording);
};

}  // namespace navora
