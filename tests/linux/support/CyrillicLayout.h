#pragma once

namespace navora {

// Adds a second, active keyboard layout until destroyed: the keys of the letters that menus use
// produce Cyrillic letters.
class CyrillicLayout {
 public:
  CyrillicLayout();
  ~CyrillicLayout();
  CyrillicLayout(const CyrillicLayout&) = delete;
  CyrillicLayout& operator=(const CyrillicLayout&) = delete;
};

}  // namespace navora
