#pragma once

#include "support/Json.h"

namespace navora {

// An appearance as a page reports it, in which no two values are equal.
inline const Json& appearanceDictionary() {
  static const Json dictionary{{"dark", false},
                               {"surface", "#010000"},
                               {"surfaceEnd", "#020000"},
                               {"border", "#030000"},
                               {"focus", "#040000"},
                               {"ink", "#050000"},
                               {"caret", "#060000"},
                               {"placeholderColor", "#070000"},
                               {"muted", "#080000"},
                               {"button", "#090000"},
                               {"buttonHover", "#0a0000"},
                               {"buttonInk", "#0b0000"},
                               {"radius", 12},
                               {"padding", 13.5},
                               {"fontSize", 14},
                               {"lineHeight", 15},
                               {"font", "serif"},
                               {"placeholder", "Write"},
                               {"theme", "system"}};
  return dictionary;
}

}  // namespace navora
