#pragma once

#include <compare>
#include <string_view>

namespace navora {

// Compares versions component by component, numbers numerically and of any length. Ignores text
// after a hyphen and trailing zeros ("1.0" equals "1.0.0"). Letters make a version older ("1.0rc1"
// < "1.0").
std::weak_ordering compareVersions(std::string_view a, std::string_view b);

}  // namespace navora
