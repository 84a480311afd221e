#pragma once

#import <AppKit/AppKit.h>

#include "platform/Image.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

class MacImaging final : public Imaging {
 public:
  std::shared_ptr<Bitmap> makeBitmap(int pixelsWide, int pixelsHigh) override;
  std::shared_ptr<Image> makeImage(Size points) override;
};

// Returns the NSImage behind an image made by MacImaging.
NSImage* nsImage(const Image& image);

}  // namespace navora

NS_ASSUME_NONNULL_END
