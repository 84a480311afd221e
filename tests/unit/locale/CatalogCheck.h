#pragma once

#include <set>
#include <string>
#include <vector>

#include "support/Json.h"

namespace navora::test {

// Returns the errors of a catalog resource, one line each, starting with the locale. `locales` are
// the required catalogs, `keys` the texts that each of them must translate.
std::vector<std::string> catalogProblems(const Json& catalogs,
                                         const std::vector<std::string>& locales,
                                         const std::set<std::string>& keys);

// Returns the errors of a resource with a desktop's own words, which replace some texts of valid
// catalogs.
std::vector<std::string> desktopWordProblems(const Json& words, const Json& catalogs);

}  // namespace navora::test
