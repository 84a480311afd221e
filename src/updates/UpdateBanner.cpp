#include "updates/UpdateBanner.h"

#include <algorithm>
#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

UpdateBannerProgress progressOf(double value) {
  // NaN counts as unknown, like a negative value.
  if (!(value >= 0)) return UpdateBannerProgress::indeterminate();
  return UpdateBannerProgress::ofFraction(std::min(value, 1.0));
}

}  // namespace

UpdateBanner::UpdateBanner(std::unique_ptr<UpdateBannerView> view) : view_(std::move(view)) {
  content_.button(UpdateBannerButton::close).title = "×";
  view_->setDelegate(this);
  refreshLocale();
}

UpdateBanner::~UpdateBanner() {
  view_->setDelegate(nullptr);
}

void UpdateBanner::attach(MainWindow& window) {
  view_->attach(window);
}

void UpdateBanner::present(UpdateBannerPresentation presentation) {
  clearActions();
  heading_ = std::move(presentation.heading);
  detail_ = std::move(presentation.detail);
  setButton(UpdateBannerButton::primary, std::move(presentation.primary));
  setButton(UpdateBannerButton::secondary, std::move(presentation.secondary));
  setButton(UpdateBannerButton::tertiary, std::move(presentation.tertiary));
  auto& close = content_.button(UpdateBannerButton::close);
  close.visible = static_cast<bool>(presentation.close);
  close.enabled = true;
  actions_[UpdateBannerButton::close] = std::move(presentation.close);
  refreshLocale();
  hasProgress_ = presentation.progress.has_value();
  view_->setProgress(hasProgress_ ? progressOf(*presentation.progress) : UpdateBannerProgress{});
  view_->setHidden(false);
}

void UpdateBanner::setButton(UpdateBannerButton which, UpdateBannerPresentation::Button button) {
  content_.button(which).visible = static_cast<bool>(button.title);
  content_.button(which).enabled = true;
  titles_[which] = std::move(button.title);
  actions_[which] = std::move(button.action);
}

void UpdateBanner::setProgress(double value) {
  if (hasProgress_) view_->setProgress(progressOf(value));
}

void UpdateBanner::setRetry(Action action) {
  setButton(UpdateBannerButton::primary, {[] { return L("Перезапустить"); }, std::move(action)});
  refreshLocale();
}

void UpdateBanner::setClose(Action action) {
  setButton(UpdateBannerButton::secondary, {[] { return L("Закрыть"); }, std::move(action)});
  refreshLocale();
}

void UpdateBanner::clearActions() {
  actions_.clear();
}

void UpdateBanner::disableActions() {
  clearActions();
  for (auto& button : content_.buttons)
    button.enabled = false;
  view_->setContent(content_);
}

void UpdateBanner::hide() {
  view_->setHidden(true);
}

bool UpdateBanner::isHidden() const {
  return view_->isHidden();
}

void UpdateBanner::announce() {
  view_->announce(content_.title);
}

void UpdateBanner::refreshLocale() {
  if (heading_) content_.title = heading_();
  if (detail_) content_.detail = detail_();
  for (const auto& [which, title] : titles_) {
    if (title) content_.button(which).title = title();
  }
  content_.button(UpdateBannerButton::tertiary).toolTip =
      L("Не напоминать об этой версии. Новые версии будут показаны.");
  auto& close = content_.button(UpdateBannerButton::close);
  close.toolTip = L("Закрыть до завтра");
  close.accessibilityLabel = close.toolTip;
  content_.accessibilityLabel = L("Обновление Наворы");
  view_->setContent(content_);
}

void UpdateBanner::bannerButtonPressed(UpdateBannerButton button) {
  const Action action = std::exchange(actions_[button], nullptr);
  clearActions();
  if (action) action();
}

}  // namespace navora
