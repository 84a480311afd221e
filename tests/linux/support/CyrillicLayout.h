#pragma once

namespace navora {

// While it exists, the keyboard has a second layout, without Latin letters, and types in that one:
// the keys of the letters that menus use give Cyrillic ones.
class CyrillicLayout {
 public:
  CyrillicLayout();
  ~CyrillicLayout();
  CyrillicLayout(const CyrillicLayout&) = delete;
  CyrillicLayout& operator=(const CyrillicLayout&) = delete;
};

}  // namespace navora
