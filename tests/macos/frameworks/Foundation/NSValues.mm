#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::encodeUtf8;
using navora::doubles::stringFromUtf8;
using navora::doubles::unitsOf;

NSErrorDomain const NSPOSIXErrorDomain = @"NSPOSIXErrorDomain";
NSErrorDomain const NSURLErrorDomain = @"NSURLErrorDomain";
NSErrorDomain const NSCocoaErrorDomain = @"NSCocoaErrorDomain";
NSErrorUserInfoKey const NSLocalizedDescriptionKey = @"NSLocalizedDescription";

@implementation NSNull

+ (NSNull*)null {
  static NSNull* const null = navora::objc::forever([[NSNull alloc] init]);
  return null;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

// Whole numbers keep all their digits.
@interface NSNumber ()
@property(nonatomic, readonly) NSString* jsonText;
@end

@implementation NSNumber {
  enum class Kind { boolean, integer, natural, real } _kind;
  long long _integer;
  unsigned long long _natural;
  double _real;
}

// One object for each of the two values, which is how a Boolean is told from a number: Core
// Foundation, CFBoolean.
+ (NSNumber*)numberWithBool:(BOOL)value {
  static NSNumber* const numbers[] = {navora::objc::forever([NSNumber makeBoolean:NO]),
                                      navora::objc::forever([NSNumber makeBoolean:YES])};
  return numbers[value ? 1 : 0];
}

+ (NSNumber*)makeBoolean:(BOOL)value {
  NSNumber* number = [NSNumber numberWithLongLong:value ? 1 : 0];
  number->_kind = Kind::boolean;
  return number;
}

+ (NSNumber*)numberWithInteger:(NSInteger)value {
  return [self numberWithLongLong:value];
}

+ (NSNumber*)numberWithLongLong:(long long)value {
  NSNumber* number = [[NSNumber alloc] init];
  number->_kind = Kind::integer;
  number->_integer = value;
  return number;
}

+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value {
  NSNumber* number = [[NSNumber alloc] init];
  number->_kind = Kind::natural;
  number->_natural = value;
  return number;
}

+ (NSNumber*)numberWithDouble:(double)value {
  NSNumber* number = [[NSNumber alloc] init];
  number->_kind = Kind::real;
  number->_real = value;
  return number;
}

- (double)doubleValue {
  switch (_kind) {
    case Kind::boolean:
    case Kind::integer:
      return static_cast<double>(_integer);
    case Kind::natural:
      return static_cast<double>(_natural);
    case Kind::real:
      return _real;
  }
}

- (BOOL)boolValue {
  return self.doubleValue != 0;
}

- (NSString*)jsonText {
  switch (_kind) {
    case Kind::boolean:
      return _integer != 0 ? @"true" : @"false";
    case Kind::integer:
      return stringFromUtf8(std::to_string(_integer));
    case Kind::natural:
      return stringFromUtf8(std::to_string(_natural));
    case Kind::real: {
      char text[32];
      std::snprintf(text, sizeof text, "%.17g", _real);
      return stringFromUtf8(text);
    }
  }
}

// By value, whatever the type: documentation of -isEqualToNumber:.
- (BOOL)isEqual:(id)object {
  return [object isKindOfClass:[NSNumber class]] &&
         self.doubleValue == ((NSNumber*)object).doubleValue;
}

- (NSUInteger)hash {
  return std::hash<double>()(self.doubleValue);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSData {
  std::string _bytes;
}

+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length {
  NSData* data = [[self alloc] init];
  if (length > 0) data->_bytes.assign(static_cast<const char*>(bytes), length);
  return data;
}

+ (nullable instancetype)dataWithContentsOfURL:(NSURL*)url {
  std::ifstream file(navora::doubles::utf8Of(url.path), std::ios::binary);
  if (!file) return nil;
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return file.bad() ? nil : [self dataWithBytes:bytes.data() length:bytes.size()];
}

- (NSUInteger)length {
  return _bytes.size();
}

- (const void*)bytes {
  return _bytes.data();
}

- (BOOL)isEqual:(id)object {
  return [object isKindOfClass:[NSData class]] && _bytes == ((NSData*)object)->_bytes;
}

- (NSUInteger)hash {
  return std::hash<std::string>()(_bytes);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSError {
  NSDictionary* _userInfo;
}

@synthesize domain = _domain, code = _code;

+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)userInfo {
  if (domain == nil) navora::objc::raise("NSInvalidArgumentException", "an error without a domain");
  NSError* error = [[self alloc] init];
  error->_domain = [domain copy];
  error->_code = code;
  error->_userInfo = [userInfo copy];
  return error;
}

// Made from domain and code if the user info has none: documentation of localizedDescription.
- (NSString*)localizedDescription {
  NSString* given = _userInfo[NSLocalizedDescriptionKey];
  if (given != nil) return given;
  return stringFromUtf8("The operation couldn’t be completed. (" +
                        navora::doubles::utf8Of(_domain) + " error " + std::to_string(_code) +
                        ".)");
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

namespace {

// Writes JSON (RFC 8259). Which objects it accepts: documentation of NSJSONSerialization.
class JsonWriter {
 public:
  // Returns nil if a string has half a surrogate pair, which UTF-8 cannot express.
  NSData* write(id object) {
    append(object);
    const auto text = encodeUtf8(units_);
    return text ? [NSData dataWithBytes:text->data() length:text->size()] : nil;
  }

 private:
  void append(id object) {
    if ([object isKindOfClass:[NSString class]]) {
      appendString(object);
    } else if ([object isKindOfClass:[NSNumber class]]) {
      appendNumber(object);
    } else if ([object isKindOfClass:[NSArray class]]) {
      appendArray(object);
    } else if ([object isKindOfClass:[NSDictionary class]]) {
      appendDictionary(object);
    } else if ([object isKindOfClass:[NSNull class]]) {
      units_ += u"null";
    } else {
      refuse(navora::objc::className(object));
    }
  }

  // Solidi are escaped: documentation of NSJSONWritingWithoutEscapingSlashes.
  void appendString(NSString* string) {
    units_ += u'"';
    for (const char16_t unit : unitsOf(string)) {
      if (unit == u'"' || unit == u'\\' || unit == u'/') {
        units_ += u'\\';
        units_ += unit;
      } else if (unit < 0x20) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
        units_.append(escape, escape + 6);
      } else {
        units_ += unit;
      }
    }
    units_ += u'"';
  }

  void appendNumber(NSNumber* number) {
    if (!std::isfinite(number.doubleValue)) refuse("a number that is not finite");
    units_ += unitsOf(number.jsonText);
  }

  void appendArray(NSArray* array) {
    char16_t separator = u'[';
    for (id element in array) {
      units_ += separator;
      separator = u',';
      append(element);
    }
    if (array.count == 0) units_ += u'[';
    units_ += u']';
  }

  void appendDictionary(NSDictionary* dictionary) {
    char16_t separator = u'{';
    for (id key in dictionary) {
      if (![key isKindOfClass:[NSString class]]) refuse("a key that is not a string");
      units_ += separator;
      separator = u',';
      appendString(key);
      units_ += u':';
      append(dictionary[key]);
    }
    if (dictionary.count == 0) units_ += u'{';
    units_ += u'}';
  }

  [[noreturn]] static void refuse(const std::string& what) {
    navora::objc::raise("NSInvalidArgumentException", "JSON cannot express " + what);
  }

  std::u16string units_;
};

}  // namespace

@implementation NSJSONSerialization

+ (nullable NSData*)dataWithJSONObject:(id)object
                               options:(NSJSONWritingOptions)options
                                 error:(NSError* _Nullable* _Nullable)error {
  const bool isFragment =
      ![object isKindOfClass:[NSArray class]] && ![object isKindOfClass:[NSDictionary class]];
  if (isFragment && (options & NSJSONWritingFragmentsAllowed) == 0) {
    navora::objc::raise("NSInvalidArgumentException", "a JSON fragment");
  }
  NSData* data = JsonWriter().write(object);
  constexpr NSInteger propertyListWriteInvalidError = 3852;
  if (data == nil && error != nullptr) {
    *error = [NSError errorWithDomain:NSCocoaErrorDomain
                                 code:propertyListWriteInvalidError
                             userInfo:nil];
  }
  return data;
}

@end
