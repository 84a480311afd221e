#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Navigation.h"

namespace navora {

struct OpenPanelParameters {
  bool allowsMultipleSelection = false;
  bool allowsDirectories = false;

  bool operator==(const OpenPanelParameters&) const = default;
};

// Shows the dialogs that a page requests. Called on the main thread. Each completion must be called
// exactly once, possibly later; the page's scripts are blocked until then.
class PageDialogDelegate {
 public:
  using AlertCompletion = std::function<void()>;
  using ConfirmCompletion = std::function<void(bool)>;
  using PromptCompletion = std::function<void(std::optional<std::string>)>;
  using OpenPanelCompletion =
      std::function<void(std::optional<std::vector<std::filesystem::path>>)>;

  virtual ~PageDialogDelegate() = default;

  virtual void runAlertPanel(const std::string& message, const FrameInfo& initiatedBy,
                             AlertCompletion completion) = 0;
  virtual void runConfirmPanel(const std::string& message, const FrameInfo& initiatedBy,
                               ConfirmCompletion completion) = 0;
  virtual void runTextInputPanel(const std::string& prompt,
                                 const std::optional<std::string>& defaultText,
                                 const FrameInfo& initiatedBy, PromptCompletion completion) = 0;
  virtual void runOpenPanel(const OpenPanelParameters& parameters, const FrameInfo& initiatedBy,
                            OpenPanelCompletion completion) = 0;
};

}  // namespace navora
