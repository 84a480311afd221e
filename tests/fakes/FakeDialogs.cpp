#include "fakes/FakeDialogs.h"

namespace navora {

void FakeDialogs::runAlert(const AlertDescription& alert, AlertCompletion completion) {
  log_.record("dialogs.alert " + alert.messageText);
  alerts.ask(alert, std::move(completion));
}

void FakeDialogs::beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                                 OpenPanelCompletion completion) {
  log_.record("dialogs.openPanel");
  openPanels.ask({&window, parameters}, std::move(completion));
}

void FakeDialogs::beginSavePanel(MainWindow& window, const std::string& suggestedName,
                                 SavePanelCompletion completion) {
  log_.record("dialogs.savePanel " + suggestedName);
  savePanels.ask({&window, suggestedName}, std::move(completion));
}

}  // namespace navora
