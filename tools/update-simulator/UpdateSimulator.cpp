#include "UpdateSimulator.h"

#include <iostream>
#include <memory>

#include <gtkmm/overlay.h>

#include "hosts/linux/banner/LinuxUpdateBanner.h"

namespace navora {
namespace {

constexpr Size contentSize{1100, 760};
constexpr Size minimumSize{700, 500};

}  // namespace

UpdateSimulator::UpdateSimulator(WindowAppearance appearance, std::size_t first)
    : window_({"Update simulator", contentSize, minimumSize, "UpdateSimulator"}, *this, defaults_,
              colorScheme_),
      help_("The right and left arrow keys show the next and the previous state."),
      banner_(std::make_unique<LinuxUpdateBanner>()) {
  colorScheme_.setAppearance(appearance);
  help_.show();
  window_.overlay().add(help_);
  banner_.attach(window_);
  native().signal_key_press_event().connect(
      [this](const GdkEventKey* event) {
        if (event->keyval != GDK_KEY_Right && event->keyval != GDK_KEY_Left) return false;
        step(event->keyval == GDK_KEY_Right);
        return true;
      },
      false);
  show(first);
  window_.makeKeyAndOrderFront();
}

UpdateSimulator::~UpdateSimulator() = default;

void UpdateSimulator::show(std::size_t index) {
  index_ = index;
  const UpdateBannerScenario& scenario = updateBannerScenarios()[index];
  scenario.present(banner_, [this] {
    std::cout << "A button was pressed.\n";
    step(true);
  });
  window_.setTitle("Update simulator: " + scenario.name);
  std::cout << scenario.name << '\n';
}

void UpdateSimulator::step(bool forwards) {
  const std::size_t count = updateBannerScenarios().size();
  show((index_ + (forwards ? 1 : count - 1)) % count);
}

}  // namespace navora
