#include "fakes/FakeErrorView.h"

#include <utility>

namespace navora {

FakeErrorView::FakeErrorView(EventLog& log, FakeMainWindow& window,
                             ErrorViewDescription description)
    : log_(log),
      siblings_(window.overlays()),
      description_(std::move(description)),
      detail_(description_.detail) {
  log_.record("errorView.make");
  siblings_->push_back(this);
}

FakeErrorView::~FakeErrorView() {
  log_.record("errorView.remove");
  std::erase(*siblings_, this);
}

void FakeErrorView::setDetail(const std::string& text) {
  log_.record("errorView.setDetail");
  detail_ = text;
}

void FakeErrorView::setHidden(bool hidden) {
  log_.record(hidden ? "errorView.hide" : "errorView.show");
  hidden_ = hidden;
}

}  // namespace navora
