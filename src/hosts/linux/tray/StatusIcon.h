#pragma once

#include <gio/gio.h>

#include "platform/Image.h"

namespace navora {

// Returns the image as the IconPixmap property of a StatusNotifierItem, in the usual sizes of tray
// icons: a floating `a(iiay)` of width, height and rows of pixels from the top, four bytes each
// (alpha, red, green, blue, not premultiplied). A template image is white if `dark`, otherwise
// black. Empty for an image without bitmaps.
GVariant* statusIconPixmaps(const Image& image, bool dark);

}  // namespace navora
