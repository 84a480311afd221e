#pragma once

#include <optional>
#include <string>

#import <Foundation/Foundation.h>

#include "support/Json.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Between JSON and the objects in which the frameworks hold structured values: NSNull, NSNumber,
// NSString, NSArray and NSDictionary.

// JSON text of the object; nil is null. None for what JSON cannot express (dates, data, numbers
// that are not finite, keys that are no strings) and for structures that are cyclic or out of all
// proportion.
std::optional<std::string> toJsonText(id _Nullable object);
std::optional<Json> toJson(id _Nullable object);

// Property lists have no null: null gives nil, and a null inside a list or dictionary is left out.
id _Nullable toPropertyList(const Json& value);

}  // namespace navora

NS_ASSUME_NONNULL_END
