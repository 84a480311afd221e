#pragma once

#include <nlohmann/json_fwd.hpp>

namespace navora {

// For headers that name Json without using it; support/Json.h brings the complete type.
using Json = nlohmann::json;

}  // namespace navora
