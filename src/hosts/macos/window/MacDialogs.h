#pragma once

#include "platform/Dialogs.h"

namespace navora {

// Shows alerts as modal windows, which block until they are answered, and file panels as sheets.
class MacDialogs final : public Dialogs {
 public:
  void runAlert(const AlertDescription& alert, AlertCompletion completion) override;
  void beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                      OpenPanelCompletion completion) override;
  void beginSavePanel(MainWindow& window, const std::string& suggestedName,
                      SavePanelCompletion completion) override;
};

}  // namespace navora
