#include <cstddef>
#include <cstdint>

#include "support/FatalError.h"
#include "support/PercentEncoding.h"
#include "support/Text.h"
#include "support/Url.h"

namespace {

void require(bool condition, int line) {
  if (!condition) navora::fatalError("A property of texts does not hold", "TextFuzzer", line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace navora;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t characters = characterCount(text);
  require(characters <= utf16Length(text), __LINE__);
  require(prefixCharacters(text, characters) == text, __LINE__);
  require(characterCount(prefixCharacters(text, characters / 2)) == characters / 2, __LINE__);
  require(trimmed(trimmed(text)) == trimmed(text), __LINE__);
  require(isValidUtf8(lowercased(text)) == isValidUtf8(text), __LINE__);
  const auto url = Url::parse("https://navora.example/" + percentEncoded(text));
  require(url && url->path() == "/" + percentEncoded(text), __LINE__);
  return 0;
}
