#pragma once

#include <set>
#include <string>
#include <vector>

#include "support/Json.h"

namespace navora::test {

// Everything that is wrong with a catalog resource, a line each, beginning with the locale.
// `locales` are the catalogs that there must be, `keys` the texts that each must translate.
std::vector<std::string> catalogProblems(const Json& catalogs,
                                         const std::vector<std::string>& locales,
                                         const std::set<std::string>& keys);

}  // namespace navora::test
