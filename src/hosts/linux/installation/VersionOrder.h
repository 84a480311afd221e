#pragma once

#include <compare>
#include <string_view>

namespace navora {

// The order of releases. Versions are compared component by component, numbers as numbers of any
// length; what follows a hyphen does not count, nor do zeros at the end ("1.0" is "1.0.0"), and
// letters make a version earlier ("1.0rc1" comes before "1.0").
std::weak_ordering compareVersions(std::string_view a, std::string_view b);

}  // namespace navora
