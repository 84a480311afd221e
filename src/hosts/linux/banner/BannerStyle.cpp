#include "hosts/linux/banner/BannerStyle.h"

#include <locale>
#include <sstream>

#include "platform/UpdateBannerView.h"

namespace navora {
namespace {

using Layout = UpdateBannerLayout;

// The system red of macOS. GTK themes define no red but that of destructive actions, each its own.
constexpr const char* systemRed = "#ff3b30";

// No border: the card draws its own, because CSS borders in GTK are whole pixels wide.
std::string plate() {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  css << " { margin: 0; padding: " << Layout::verticalInset << "px " << Layout::horizontalInset
      << "px; min-width: 0; border: none; border-radius: " << Layout::cornerRadius
      << "px; box-shadow: none; outline: none; }";
  return css.str();
}

// The detail may say why an update is blocked, so it is darker than the theme's dim label.
std::string texts(const std::string& card) {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  css << card << " ." << BannerStyle::title << " { font-size: " << Layout::titleFontSize
      << "px; font-weight: 600; }\n"
      << card << " ." << BannerStyle::detail << " { font-size: " << Layout::detailFontSize
      << "px; opacity: 0.75; }\n";
  return css.str();
}

std::string primaryButton(const std::string& button) {
  std::ostringstream css;
  css << button << " { color: white; background: " << systemRed << "; border-color: shade("
      << systemRed << ", 0.85); box-shadow: none; text-shadow: none; }\n"
      << button << " label { color: white; text-shadow: none; }\n"
      << button << ":hover { background: mix(" << systemRed << ", white, 0.12); }\n"
      << button << ":active { background: shade(" << systemRed << ", 0.85); }\n"
      << button << ":disabled { background: " << systemRed << "; opacity: 0.5; }\n";
  return css.str();
}

// A filled pill, less high than the buttons above it.
std::string tertiaryButton(const std::string& button) {
  return button +
         " { font-size: 11px; padding: 2px 10px; min-height: 0; border: none; border-radius: 10px;"
         " background: alpha(currentColor, 0.1); box-shadow: none; text-shadow: none; }\n" +
         button + ":hover { background: alpha(currentColor, 0.16); }\n" + button +
         ":active { background: alpha(currentColor, 0.26); }\n";
}

// The negative margin lets the line of the "×" be higher than the button; only empty space
// overflows.
std::string closeButton(const std::string& button) {
  std::ostringstream css;
  css.imbue(std::locale::classic());
  css << button << " { font-size: " << Layout::closeFontSize
      << "px; margin: 0; padding: 0; min-width: " << Layout::closeButtonSize
      << "px; min-height: " << Layout::closeButtonSize
      << "px; border: none; background: none; box-shadow: none; opacity: 0.7; }\n"
      << button << " label { margin: -8px; }\n"
      << button << ":hover, " << button << ":focus { opacity: 1; }\n"
      << button << ":active { opacity: 0.4; }\n"
      << button << ":disabled { opacity: 0.3; }\n";
  return css.str();
}

}  // namespace

std::string BannerStyle::css() {
  const std::string ofCard = std::string(".") + card;
  const std::string ofButtons = ofCard + " button.";
  return ofCard + plate() + "\n" + texts(ofCard) + primaryButton(ofButtons + primary) +
         tertiaryButton(ofButtons + tertiary) + closeButton(ofButtons + close);
}

}  // namespace navora
