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

// The contents of an application-modal alert.
struct AlertDescription {
  struct TextField {
    Size size;
    std::string text;
    bool operator==(const TextField&) const = default;
  };

  std::string messageText;
  std::string informativeText;
  // The first is the default button. If empty, the alert has the platform's standard single button.
  std::vector<std::string> buttons;
  // Shown below the texts, with the keyboard focus.
  std::optional<TextField> textField;

  bool operator==(const AlertDescription&) const = default;
};

struct AlertResult {
  // Index of the pressed button; the last one if the alert was closed without a button.
  std::size_t button = 0;
  // Content of the text field; empty if there is none.
  std::string text;
};

// Native dialogs. Each completion is called exactly once, on the main thread, possibly before the
// function returns.
class Dialogs {
 public:
  using AlertCompletion = std::function<void(const AlertResult&)>;
  using OpenPanelCompletion =
      std::function<void(std::optional<std::vector<std::filesystem::path>>)>;
  using SavePanelCompletion = std::function<void(std::optional<std::filesystem::path>)>;

  virtual ~Dialogs() = default;

  virtual void runAlert(const AlertDescription& alert, AlertCompletion completion) = 0;
  // Show a file chooser as a sheet on `window`. The completion gets nullopt if the user cancels.
  virtual void beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                              OpenPanelCompletion completion) = 0;
  virtual void beginSavePanel(MainWindow& window, const std::string& suggestedName,
                              SavePanelCompletion completion) = 0;
};

}  // namespace navora
