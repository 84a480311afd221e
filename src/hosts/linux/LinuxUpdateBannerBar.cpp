#include "hosts/linux/LinuxUpdateBannerBar.h"

#include <glibmm/main.h>

namespace navora {
namespace {

// The toolkit moves the block smoothly from one pulse to the next.
constexpr unsigned pulseMilliseconds = 100;
constexpr double pulseStep = 0.07;

}  // namespace

LinuxUpdateBannerBar::LinuxUpdateBannerBar() {
  bar_.set_pulse_step(pulseStep);
  bar_.set_no_show_all(true);
  bar_.signal_map().connect([this] { updateAnimation(); });
  bar_.signal_unmap().connect([this] { updateAnimation(); });
}

LinuxUpdateBannerBar::~LinuxUpdateBannerBar() {
  animation_.disconnect();
}

void LinuxUpdateBannerBar::show(UpdateBannerProgress progress) {
  progress_ = progress;
  if (progress.kind == UpdateBannerProgress::Kind::fraction) bar_.set_fraction(progress.fraction);
  bar_.set_visible(progress.kind != UpdateBannerProgress::Kind::hidden);
  updateAnimation();
}

void LinuxUpdateBannerBar::setSuspended(bool suspended) {
  suspended_ = suspended;
  updateAnimation();
}

void LinuxUpdateBannerBar::updateAnimation() {
  const bool indeterminate = progress_.kind == UpdateBannerProgress::Kind::indeterminate;
  const bool wanted = indeterminate && bar_.get_mapped() && !suspended_;
  if (wanted == isAnimating()) return;
  if (wanted) {
    bar_.pulse();
    animation_ = Glib::signal_timeout().connect(
        [this] {
          bar_.pulse();
          return true;
        },
        pulseMilliseconds);
  } else {
    animation_.disconnect();
    // Ends the toolkit's own part of the animation, which goes on in hidden bars.
    bar_.set_fraction(progress_.fraction);
  }
}

}  // namespace navora
