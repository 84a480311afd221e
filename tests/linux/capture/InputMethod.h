#pragma once

#include <memory>
#include <string>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/ChildProcess.h"

namespace navora {

// An ibus daemon with one of its engines on the test's desktop. While it exists, the text views
// created in this process use it. Needs the packages ibus, ibus-gtk3 and those of the engines;
// throws TestError without them.
class InputMethod {
 public:
  enum class Preedit { inTheTextView, inItsOwnWindow };

  explicit InputMethod(Preedit preedit);
  ~InputMethod();
  InputMethod(const InputMethod&) = delete;
  InputMethod& operator=(const InputMethod&) = delete;

  // Returns whether the text view with the focus is connected to the daemon.
  bool hasContext();
  // Makes this engine handle the keys of the text view with the focus; returns once it does. m17n
  // has "m17n:t:syllables" here, which takes the keys that it composes with: k and n, Return and
  // Ctrl+Return, which commit, and Escape, which discards.
  void useEngine(const std::string& name);

 private:
  std::string context();

  std::unique_ptr<driver::ChildProcess> daemon_;
  std::unique_ptr<driver::BusConnection> bus_;
};

}  // namespace navora
