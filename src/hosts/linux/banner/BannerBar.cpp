#include "hosts/linux/banner/BannerBar.h"

#include <utility>

#include <gdkmm/frameclock.h>

namespace navora {
namespace {

// The toolkit moves the block smoothly from one pulse to the next.
constexpr gint64 pulseMicroseconds = 100'000;
constexpr double pulseStep = 0.07;

}  // namespace

BannerBar::BannerBar() {
  bar_.set_pulse_step(pulseStep);
  bar_.set_no_show_all(true);
  bar_.signal_map().connect([this] { updateAnimation(); });
  bar_.signal_unmap().connect([this] { updateAnimation(); });
}

BannerBar::~BannerBar() {
  endAnimation();
}

void BannerBar::show(UpdateBannerProgress progress) {
  progress_ = progress;
  if (progress.kind == UpdateBannerProgress::Kind::fraction) bar_.set_fraction(progress.fraction);
  bar_.set_visible(progress.kind != UpdateBannerProgress::Kind::hidden);
  updateAnimation();
}

void BannerBar::updateAnimation() {
  const bool indeterminate = progress_.kind == UpdateBannerProgress::Kind::indeterminate;
  if (!indeterminate || !bar_.get_mapped()) {
    endAnimation();
  } else if (!isAnimating()) {
    beginAnimation();
  }
}

// Driven by the window's frames and by no timer: a minimised window has none.
void BannerBar::beginAnimation() {
  bar_.pulse();
  animation_ = bar_.add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>& clock) {
    frame(clock->get_frame_time());
    return true;
  });
}

void BannerBar::endAnimation() {
  if (!isAnimating()) return;
  bar_.remove_tick_callback(std::exchange(animation_, 0));
  // Ends the toolkit's own part of the animation, which goes on in hidden bars.
  bar_.set_fraction(progress_.fraction);
}

void BannerBar::frame(gint64 time) {
  if (time - lastPulse_ < pulseMicroseconds) return;
  lastPulse_ = time;
  bar_.pulse();
}

}  // namespace navora
