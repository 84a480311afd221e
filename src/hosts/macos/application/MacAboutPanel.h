#pragma once

#include "platform/AboutPanel.h"

namespace navora {

// Brings the system's own panel to the front.
void orderFrontAboutPanel(const AboutPanelOptions& options);

}  // namespace navora
