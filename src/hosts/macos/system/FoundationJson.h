#pragma once

#include <optional>
#include <string>

#import <Foundation/Foundation.h>

#include "support/Json.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Conversions between JSON and the objects that hold structured values in the frameworks: NSNull,
// NSNumber, NSString, NSArray and NSDictionary.

// Converts nil to null. Returns nullopt for an object that JSON cannot express (a date, data, a
// number that is not finite, a key that is not a string), that is cyclic, or that exceeds the
// limits on depth and size.
std::optional<std::string> toJsonText(id _Nullable object);
std::optional<Json> toJson(id _Nullable object);

// Returns nil for null and leaves out nulls in arrays and dictionaries: property lists have no
// null.
id _Nullable toPropertyList(const Json& value);

}  // namespace navora

NS_ASSUME_NONNULL_END
