#include "hosts/linux/banner/BannerBar.h"

#include <utility>

#include <gdkmm/frameclock.h>

namespace navora {
namespace {

// GTK animates the block between two pulses.
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
  stopAnimation();
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
    stopAnimation();
  } else if (!isAnimating()) {
    startAnimation();
  }
}

// Uses the frame clock rather than a timer: a minimised window has no frames.
void BannerBar::startAnimation() {
  bar_.pulse();
  animation_ = bar_.add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>& clock) {
    frameStarted(clock->get_frame_time());
    return true;
  });
}

void BannerBar::stopAnimation() {
  if (!isAnimating()) return;
  bar_.remove_tick_callback(std::exchange(animation_, 0));
  // Leaves GTK's activity mode, whose own animation continues in a hidden bar.
  bar_.set_fraction(progress_.fraction);
}

void BannerBar::frameStarted(gint64 time) {
  if (time - lastPulse_ < pulseMicroseconds) return;
  lastPulse_ = time;
  bar_.pulse();
}

}  // namespace navora
