#pragma once

#include <string>

#include "capture/CaptureError.h"

namespace navora {

// The capture panel's own texts, in the current language.
struct CaptureTexts {
  static std::string title();
  static std::string editorLabel();
  static std::string placeholder();
  static std::string submitToolTip();
  static std::string submitLabel();
  // The message shown when there is nothing to report.
  static std::string hint();
  static std::string tooLong();
  static std::string saving();
  static std::string unconfirmedText();
  static std::string loginDone();
  // Returns the text for an error; `unconfirmed` means that the note may have been stored anyway.
  static CaptureMessage failure(const CaptureError& error, bool unconfirmed);
};

}  // namespace navora
