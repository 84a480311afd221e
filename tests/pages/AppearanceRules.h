#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace navora::driver {

// What the application would not accept of an appearance message, a line each.
std::vector<std::string> appearanceProblems(const nlohmann::json& appearance);

}  // namespace navora::driver
