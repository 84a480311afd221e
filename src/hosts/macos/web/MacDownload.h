#pragma once

#import <WebKit/WebKit.h>

#include "platform/Download.h"

@class NavoraDownloadForwarder;

namespace navora {

class MacDownload final : public Download {
 public:
  explicit MacDownload(WKDownload* _Nonnull download);
  ~MacDownload() override;
  MacDownload(const MacDownload&) = delete;
  MacDownload& operator=(const MacDownload&) = delete;

  void setDelegate(DownloadDelegate* _Nullable delegate) override;

 private:
  WKDownload* _Nonnull download_;
  // Kept here because WebKit holds its delegate weakly.
  NavoraDownloadForwarder* _Nonnull forwarder_;
};

}  // namespace navora
