#pragma once

#include <optional>
#include <string>

#include "platform/CaptureEditorView.h"
#include "platform/Color.h"
#include "platform/WindowAppearance.h"
#include "support/Json.h"

namespace navora {

// How the page's editor looks, so that the panel can look the same. Lengths in points.
struct CaptureAppearance {
  bool dark;
  Color surface, surfaceEnd, border, focus, ink, caret, placeholderColor, muted, button,
      buttonHover, buttonInk;
  double radius, padding, fontSize, lineHeight;
  std::string font;         // "sans", "serif" or "mono"
  std::string placeholder;  // may be empty
  std::string theme;        // "system", "light" or "dark"

  // What the page says, checked all or nothing.
  static std::optional<CaptureAppearance> read(const Json& dictionary);
  // "#rrggbb", "#rrggbbaa", "rgb(...)" or "rgba(...)" with three or four numbers.
  static std::optional<Color> color(const Json& value);
  // For the time before the page has said anything.
  static CaptureAppearance fallback(bool dark);

  // For a desktop that is dark or light now: an appearance that follows the system and was made for
  // the other kind gives way to the fallback, in the page's own type.
  CaptureAppearance followingSystemAppearance(bool systemIsDark) const;

  WindowAppearance windowAppearance() const;
  CaptureEditorStyle editorStyle() const;

  bool operator==(const CaptureAppearance&) const = default;
};

}  // namespace navora
