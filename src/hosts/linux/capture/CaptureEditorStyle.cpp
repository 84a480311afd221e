#include "hosts/linux/capture/CaptureEditorStyle.h"

#include <cmath>
#include <locale>
#include <sstream>

#include <gtk/gtk.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

std::string cssColor(Color color) {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  const auto channel = [](double value) { return static_cast<int>(std::lround(value * 255)); };
  css << "rgba(" << channel(color.red) << ", " << channel(color.green) << ", "
      << channel(color.blue) << ", " << color.alpha << ")";
  return css.str();
}

std::string cssFamily(FontFamily family) {
  switch (family) {
    case FontFamily::serif:
      return "font-family: serif;";
    case FontFamily::mono:
      return "font-family: monospace;";
    case FontFamily::sans:
      // The text view's default, the desktop's font.
      break;
  }
  return "";
}

}  // namespace

std::string cssFrom(const CaptureEditorStyle& style) {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  css << "textview { background: none; font-size: " << style.fontSize << "px; "
      << cssFamily(style.family) << " }"
      << "textview text { background: none; color: " << cssColor(style.ink)
      << "; caret-color: " << cssColor(style.caret) << "; }"
      << "scrolledwindow, viewport, scrollbar, trough { background: none; border: none; }"
      << "undershoot, overshoot { background: none; }";
  return css.str();
}

Pango::FontDescription fontFrom(const CaptureEditorStyle& style) {
  char* name = nullptr;
  g_object_get(gtk_settings_get_default(), "gtk-font-name", &name, nullptr);
  Pango::FontDescription font(stringFrom(GCharPtr(name).get()));
  if (style.family == FontFamily::serif) font.set_family("serif");
  if (style.family == FontFamily::mono) font.set_family("monospace");
  font.set_absolute_size(style.fontSize * PANGO_SCALE);
  return font;
}

}  // namespace navora
