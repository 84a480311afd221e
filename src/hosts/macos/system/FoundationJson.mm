#include "hosts/macos/system/FoundationJson.h"

#include <cmath>

#include "hosts/macos/system/Conversions.h"

namespace navora {

namespace {

// NSJSONSerialization raises an exception for an object that it cannot write and never returns for
// a cyclic one, and a page can post either. Every object is therefore checked first, within limits.
class ExpressibleCheck {
 public:
  bool passes(id object, int depth = 0) {
    if (depth > maximumDepth || ++count_ > maximumCount) return false;
    if ([object isKindOfClass:[NSArray class]]) return passesArray(object, depth);
    if ([object isKindOfClass:[NSDictionary class]]) return passesDictionary(object, depth);
    if ([object isKindOfClass:[NSNumber class]]) return std::isfinite([object doubleValue]);
    return [object isKindOfClass:[NSString class]] || [object isKindOfClass:[NSNull class]];
  }

 private:
  static constexpr int maximumDepth = 64;
  static constexpr int maximumCount = 100'000;

  bool passesArray(NSArray* array, int depth) {
    for (id element in array) {
      if (!passes(element, depth + 1)) return false;
    }
    return true;
  }

  bool passesDictionary(NSDictionary* dictionary, int depth) {
    for (id key in dictionary) {
      if (![key isKindOfClass:[NSString class]] || !passes(dictionary[key], depth + 1)) {
        return false;
      }
    }
    return true;
  }

  int count_ = 0;
};

NSNumber* toNumber(const Json& value) {
  if (value.is_boolean()) return [NSNumber numberWithBool:value.get<bool>()];
  if (value.is_number_unsigned()) {
    return [NSNumber numberWithUnsignedLongLong:value.get<unsigned long long>()];
  }
  if (value.is_number_integer()) return [NSNumber numberWithLongLong:value.get<long long>()];
  return [NSNumber numberWithDouble:value.get<double>()];
}

NSArray* toPropertyListArray(const Json& value) {
  NSMutableArray* array = [NSMutableArray array];
  for (const Json& element : value) {
    if (id object = toPropertyList(element)) [array addObject:object];
  }
  return array;
}

NSDictionary* toPropertyListDictionary(const Json& value) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
  for (const auto& [key, member] : value.items()) {
    if (id object = toPropertyList(member)) dictionary[toNSString(key)] = object;
  }
  return dictionary;
}

}  // namespace

std::optional<std::string> toJsonText(id _Nullable object) {
  if (object == nil) return "null";
  if (!ExpressibleCheck().passes(object)) return std::nullopt;
  NSData* data = [NSJSONSerialization dataWithJSONObject:object
                                                 options:NSJSONWritingFragmentsAllowed
                                                   error:nil];
  if (data == nil) return std::nullopt;
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

std::optional<Json> toJson(id _Nullable object) {
  const std::optional<std::string> text = toJsonText(object);
  return text ? parseJson(*text) : std::nullopt;
}

id _Nullable toPropertyList(const Json& value) {
  if (value.is_boolean() || value.is_number()) return toNumber(value);
  if (value.is_string()) return toNSString(value.get_ref<const std::string&>());
  if (value.is_array()) return toPropertyListArray(value);
  if (value.is_object()) return toPropertyListDictionary(value);
  return nil;
}

}  // namespace navora
