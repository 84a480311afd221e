#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "platform/PageDialogDelegate.h"

namespace navora {

class MainWindow;

// An application-modal alert.
struct AlertDescription {
  struct TextField {
    Size size;
    std::string text;
    bool operator==(const TextField&) const = default;
  };

  std::string messageText;
  std::string informativeText;
  // The first one is the default button. Empty: the platform's own single button.
  std::vector<std::string> buttons;
  // Below the texts, with the keyboard focus.
  std::optional<TextField> textField;

  bool operator==(const AlertDescription&) const = default;
};

struct AlertResult {
  // Index of the button pressed. Closing the alert in another way gives the last one.
  std::size_t button = 0;
  // Content of the text field, empty without one.
  std::string text;
};

// Native dialogs. Completions are called exactly once, on the main thread, before the call returns
// or later.
class Dialogs {
 public:
  using AlertCompletion = std::function<void(const AlertResult&)>;
  using OpenPanelCompletion =
      std::function<void(std::optional<std::vector<std::filesystem::path>>)>;
  using SavePanelCompletion = std::function<void(std::optional<std::filesystem::path>)>;

  virtual ~Dialogs() = default;

  virtual void runAlert(const AlertDescription& alert, AlertCompletion completion) = 0;
  // Sheets on `window`.
  virtual void beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                              OpenPanelCompletion completion) = 0;
  virtual void beginSavePanel(MainWindow& window, const std::string& suggestedName,
                              SavePanelCompletion completion) = 0;
};

}  // namespace navora
