#pragma once

#import <AppKit/AppKit.h>

#include "platform/UpdateBannerView.h"

@class UpdateBanner;

namespace navora {

class MacUpdateBanner final : public UpdateBannerView {
 public:
  MacUpdateBanner();
  ~MacUpdateBanner() override;
  MacUpdateBanner(const MacUpdateBanner&) = delete;
  MacUpdateBanner& operator=(const MacUpdateBanner&) = delete;

  void setDelegate(UpdateBannerViewDelegate* _Nullable delegate) override;
  void attach(MainWindow& window) override;
  void setHidden(bool hidden) override;
  bool isHidden() const override;
  void setContent(const UpdateBannerContent& content) override;
  void setProgress(UpdateBannerProgress progress) override;
  void announce(const std::string& text) override;

 private:
  ::UpdateBanner* _Nonnull banner_;
};

}  // namespace navora
