#include <cstddef>
#include <cstdint>

#include "support/FatalError.h"
#include "support/Json.h"
#include "support/Text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto json = navora::parseJson(text);
  if (json && navora::parseJson(json->dump()) != json) {
    navora::fatalError("JSON does not read back as itself", "JsonFuzzer", __LINE__);
  }
  const auto literal = navora::parseJson(navora::jsonStringLiteral(text));
  const bool same = literal && *literal == navora::Json(text);
  if (!literal || (navora::isValidUtf8(text) && !same)) {
    navora::fatalError("A string literal does not read back as its text", "JsonFuzzer", __LINE__);
  }
  return 0;
}
