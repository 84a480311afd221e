#include "app/LoadFailureView.h"

#include <string>
#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

std::string failureText() {
  return L(
      "Проверьте подключение к интернету и попробуйте ещё раз.\nВаши записи остаются на сервере.");
}

}  // namespace

LoadFailureView::LoadFailureView(MakeView makeView, Actions actions)
    : makeView_(std::move(makeView)), actions_(std::move(actions)), view_(make()) {}

void LoadFailureView::show() {
  view_->setDetail(failureText());
  view_->setHidden(false);
}

void LoadFailureView::hide() {
  view_->setHidden(true);
}

void LoadFailureView::refreshLocale() {
  const bool hidden = view_->isHidden();
  view_.reset();
  view_ = make();
  view_->setHidden(hidden);
  view_->setDetail(failureText());
}

std::unique_ptr<ErrorView> LoadFailureView::make() {
  return makeView_({L("Навора пока недоступна"), L("Проверьте подключение к интернету."),
                    L("Попробовать снова"), L("Открыть в браузере"), actions_.retry,
                    actions_.openInBrowser});
}

}  // namespace navora
