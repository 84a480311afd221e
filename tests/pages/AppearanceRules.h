#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace navora::driver {

// Returns one line for each part of an appearance message that the application would reject.
std::vector<std::string> appearanceProblems(const nlohmann::json& appearance);

}  // namespace navora::driver
