#pragma once

#include <string>

#include "capture/CaptureError.h"

namespace navora {

// The native texts of the capture panel, in the present language.
struct CaptureTexts {
  static std::string title();
  static std::string editorLabel();
  static std::string placeholder();
  static std::string submitToolTip();
  static std::string submitLabel();
  // The message while nothing else is to be said.
  static std::string hint();
  static std::string tooLong();
  static std::string saving();
  static std::string unconfirmedText();
  static std::string loginDone();
  // Why the note was not stored; `unconfirmed` when it may be all the same.
  static CaptureMessage failure(const CaptureError& error, bool unconfirmed);
};

}  // namespace navora
