#pragma once

#include <string>

#include <pangomm/fontdescription.h>

#include "platform/CaptureEditorView.h"

namespace navora {

// Returns the GTK style sheet for the editor's text view and the scrolled window around it.
std::string cssFrom(const CaptureEditorStyle& style);

// Returns the font that this style sheet gives the text view, for measuring: a hidden widget
// applies a changed style sheet only when it is shown.
Pango::FontDescription fontFrom(const CaptureEditorStyle& style);

}  // namespace navora
