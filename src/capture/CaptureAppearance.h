#pragma once

#include <optional>
#include <string>

#include "platform/CaptureEditorView.h"
#include "platform/Color.h"
#include "platform/WindowAppearance.h"
#include "support/Json.h"

namespace navora {

// The appearance of the page's editor, which the panel adopts. Lengths in points.
struct CaptureAppearance {
  bool dark;
  Color surface, surfaceEnd, border, focus, ink, caret, placeholderColor, muted, button,
      buttonHover, buttonInk;
  double radius, padding, fontSize, lineHeight;
  std::string font;         // "sans", "serif" or "mono"
  std::string placeholder;  // may be empty
  std::string theme;        // "system", "light" or "dark"

  // Reads an appearance as the page reports it. Returns nullopt if any member is missing or
  // invalid.
  static std::optional<CaptureAppearance> read(const Json& dictionary);
  // Parses "#rrggbb", "#rrggbbaa", or "rgb(...)" or "rgba(...)" with three or four numbers. Returns
  // nullopt for anything else.
  static std::optional<Color> color(const Json& value);
  // Returns the appearance used until the page has reported one.
  static CaptureAppearance fallback(bool dark);

  // Adapts the appearance to a desktop that is now dark or light. One that follows the system but
  // was reported for the opposite mode is replaced by the fallback, with its font and placeholder
  // kept.
  CaptureAppearance followingSystemAppearance(bool systemIsDark) const;

  WindowAppearance windowAppearance() const;
  CaptureEditorStyle editorStyle() const;

  bool operator==(const CaptureAppearance&) const = default;
};

}  // namespace navora
