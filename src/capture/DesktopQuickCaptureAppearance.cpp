// The panel's appearance: adopted from the page's editor and painted alike on every host.
#include "capture/CaptureTexts.h"
#include "capture/DesktopQuickCapture.h"

namespace navora {
namespace {

constexpr const char* appearanceKey = "NavoraCaptureAppearance";

}  // namespace

void DesktopQuickCapture::syncAppearance(const Json& dictionary) {
  const auto appearance = CaptureAppearance::read(dictionary);
  if (!appearance) return;
  userDefaults_.setValue(appearanceKey, dictionary);
  applyAppearance(*appearance);
}

void DesktopQuickCapture::restoreAppearance() {
  const bool dark = panel_->systemIsDark();
  const auto stored = userDefaults_.value(appearanceKey);
  const auto appearance = stored ? CaptureAppearance::read(*stored) : std::nullopt;
  applyAppearance(appearance ? appearance->followingSystemAppearance(dark)
                             : CaptureAppearance::fallback(dark));
}

void DesktopQuickCapture::systemAppearanceDidChange(bool dark) {
  applyAppearance(palette_.followingSystemAppearance(dark));
}

void DesktopQuickCapture::applyAppearance(const CaptureAppearance& appearance) {
  palette_ = appearance;
  surface_.palette = appearance;
  submitButton_.palette = appearance;
  panel_->setAppearance(appearance.windowAppearance());
  panel_->editor().setStyle(appearance.editorStyle());
  refreshPlaceholder();
  panel_->setMessageColor(appearance.muted);
  panel_->redrawSubmitButton();
  updateLayout();
  panel_->redrawSurface();
}

void DesktopQuickCapture::refreshPlaceholder() {
  panel_->editor().setPlaceholder(palette_.placeholder.empty() ? CaptureTexts::placeholder()
                                                               : palette_.placeholder);
}

void DesktopQuickCapture::submitButtonHovered(bool hovered) {
  submitButton_.hovered = hovered;
  panel_->redrawSubmitButton();
}

void DesktopQuickCapture::paintSurface(Canvas& canvas, Size bounds) {
  surface_.paint(canvas, bounds);
}

void DesktopQuickCapture::paintSubmitButton(Canvas& canvas, Size bounds) {
  submitButton_.paint(canvas, bounds);
}

}  // namespace navora
