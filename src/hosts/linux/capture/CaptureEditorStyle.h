#pragma once

#include <string>

#include <pangomm/fontdescription.h>

#include "platform/CaptureEditorView.h"

namespace navora {

// The style sheet for the editor's text view and the scrolled window around it.
std::string cssFrom(const CaptureEditorStyle& style);

// The font that this style sheet gives the text view; for measuring, as a hidden widget takes over
// a style sheet only when it is shown.
Pango::FontDescription fontFrom(const CaptureEditorStyle& style);

}  // namespace navora
