#pragma once

#include <cstddef>
#include <string>

#include <gtkmm/label.h>

#include "hosts/linux/window/ColorScheme.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "platform/MemoryUserDefaults.h"
#include "tests/support/UpdateBannerScenarios.h"
#include "updates/UpdateBanner.h"

namespace navora {

// A main window whose banner shows one scenario after the other: the right and left arrow keys and
// every button of the banner lead on. Stores nothing.
class UpdateSimulator final : private MainWindowDelegate {
 public:
  // Begins with the scenario at `first`, an index of updateBannerScenarios().
  UpdateSimulator(WindowAppearance appearance, std::size_t first);
  ~UpdateSimulator() override;

  UpdateSimulator(const UpdateSimulator&) = delete;
  UpdateSimulator& operator=(const UpdateSimulator&) = delete;

  Gtk::Window& native() { return window_.native(); }

 private:
  bool windowShouldClose() override { return true; }
  void show(std::size_t index);
  void step(bool forwards);

  MemoryUserDefaults defaults_;
  ColorScheme colorScheme_;
  LinuxMainWindow window_;
  Gtk::Label help_;
  UpdateBanner banner_;
  std::size_t index_ = 0;
};

}  // namespace navora
