#pragma once

#include "platform/Image.h"

namespace navora {

// Makes images in memory, painted with cairo.
class LinuxImaging final : public Imaging {
 public:
  std::shared_ptr<Bitmap> makeBitmap(int pixelsWide, int pixelsHigh) override;
  std::shared_ptr<Image> makeImage(Size points) override;
};

}  // namespace navora
