#pragma once

#include <optional>
#include <string>
#include <string_view>

#import <Foundation/Foundation.h>

// Strings between the doubles and C++.

namespace navora::doubles {

// The UTF-16 code units, for which a surrogate need not have its other half.
std::u16string unitsOf(NSString* string);
NSString* stringOf(std::u16string_view units);

// Returns nullopt for invalid UTF-8.
std::optional<std::u16string> decodeUtf8(std::string_view text);
// Returns nullopt if a surrogate has no other half.
std::optional<std::string> encodeUtf8(std::u16string_view units);

// Ends the process if the conversion is impossible: for names that tests and doubles choose.
std::string utf8Of(NSString* string);
NSString* stringFromUtf8(std::string_view text);

}  // namespace navora::doubles
