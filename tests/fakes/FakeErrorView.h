#pragma once

#include <memory>
#include <string>

#include "fakes/EventLog.h"
#include "fakes/FakeMainWindow.h"
#include "platform/ErrorView.h"

namespace navora {

class FakeErrorView final : public ErrorView {
 public:
  FakeErrorView(EventLog& log, FakeMainWindow& window, ErrorViewDescription description);
  ~FakeErrorView() override;
  FakeErrorView(const FakeErrorView&) = delete;
  FakeErrorView& operator=(const FakeErrorView&) = delete;

  const ErrorViewDescription& description() const { return description_; }
  const std::string& detail() const { return detail_; }

  // Act as the user.
  void clickRetry() const { description_.onRetry(); }
  void clickOpenInBrowser() const { description_.onOpenInBrowser(); }

  void setDetail(const std::string& text) override;
  void setHidden(bool hidden) override;
  bool isHidden() const override { return hidden_; }

 private:
  EventLog& log_;
  std::shared_ptr<FakeMainWindow::Overlays> siblings_;
  ErrorViewDescription description_;
  std::string detail_;
  bool hidden_ = true;
};

}  // namespace navora
