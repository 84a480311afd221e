#pragma once

#include <gio/gio.h>

#include "platform/Image.h"

namespace navora {

// The image in the sizes that trays show, as a floating `a(iiay)`: width, height and the pixels in
// rows from the top, four bytes each: alpha, red, green, blue, not premultiplied. A template is
// white for dark trays and black for others. Empty for an image without bitmaps.
GVariant* statusIconPixmaps(const Image& image, bool dark);

}  // namespace navora
