#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/UpdateBannerView.h"
#include "updates/UpdateBanner.h"
#include "updates/UpdateBannerState.h"

namespace navora {

// One state of the update banner with sample values, and what the banner shows in it.
struct UpdateBannerScenario {
  // The values that the samples are made of. The last two are keys of the catalog: Russian texts.
  static constexpr const char* displayVersion = "2.0 (1187)";
  static constexpr const char* blockedMessage =
      "Сохраните быструю запись (⌘⇧Пробел) или дождитесь её отправки, затем продолжите обновление.";
  static constexpr const char* upToDateHeading = "Обновлений для этой системы нет";

  // Keys of the catalog; "{version}" stands for `displayVersion`. A button whose text is empty is
  // not visible.
  struct Shown {
    std::string heading;
    std::string detail;
    std::string primary = {};
    std::string secondary = {};
    std::string tertiary = {};
    bool close = false;
    // Before any progress has been reported.
    UpdateBannerProgress progress = {};
  };

  // Lower case, words joined by hyphens: usable as a file name or a command-line argument.
  std::string name;
  // Makes the state; each of its buttons runs the given action.
  std::function<UpdateBannerState::Value(const UpdateBannerState::Action&)> makeState;
  Shown shown;
  // The fraction that the updater then reports; only for a state whose progress is measured.
  std::optional<double> progress = std::nullopt;

  // Shows the scenario in `banner`, with its progress. Every button runs `action`, or does nothing.
  void present(UpdateBanner& banner, const UpdateBannerState::Action& action = {}) const;
};

// Returns one scenario per alternative of UpdateBannerState::Value, in the order of the variant,
// which is the order in which a user meets them.
const std::vector<UpdateBannerScenario>& updateBannerScenarios();

}  // namespace navora
