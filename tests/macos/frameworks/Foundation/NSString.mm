#include <cctype>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frameworks/Foundation/FoundationState.h"
#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::decodeUtf8;
using navora::doubles::encodeUtf8;
using navora::doubles::stringOf;
using navora::doubles::unitsOf;

// The strings that are no literals. NSString itself is abstract: -length, -characterAtIndex: and
// -getCharacters:range: are the primitive methods (documentation of NSString, "Subclassing Notes").
@interface NavoraString : NSString
- (instancetype)initWithUnits:(std::u16string)units;
@end

// What the compiler writes for @"…": no object of the heap, and not made by any method.
@interface NavoraLiteralString : NSString
@end

namespace {

constexpr char32_t firstHighSurrogate = 0xD800;
constexpr char32_t firstLowSurrogate = 0xDC00;
constexpr char32_t firstAfterSurrogates = 0xE000;
constexpr char32_t firstSupplementary = 0x10000;
constexpr char32_t firstInvalid = 0x110000;

bool isHighSurrogate(char16_t unit) {
  return unit >= firstHighSurrogate && unit < firstLowSurrogate;
}
bool isLowSurrogate(char16_t unit) {
  return unit >= firstLowSurrogate && unit < firstAfterSurrogates;
}

void append(std::u16string& units, char32_t scalar) {
  if (scalar < firstSupplementary) {
    units.push_back(static_cast<char16_t>(scalar));
    return;
  }
  const char32_t rest = scalar - firstSupplementary;
  units.push_back(static_cast<char16_t>(firstHighSurrogate + (rest >> 10)));
  units.push_back(static_cast<char16_t>(firstLowSurrogate + (rest & 0x3FF)));
}

void append(std::string& text, char32_t scalar) {
  const auto byte = [&text](char32_t value) { text.push_back(static_cast<char>(value)); };
  const auto continuation = [&](int shift) { byte(0x80 | ((scalar >> shift) & 0x3F)); };
  if (scalar < 0x80) {
    byte(scalar);
  } else if (scalar < 0x800) {
    byte(0xC0 | (scalar >> 6));
    continuation(0);
  } else if (scalar < firstSupplementary) {
    byte(0xE0 | (scalar >> 12));
    continuation(6);
    continuation(0);
  } else {
    byte(0xF0 | (scalar >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

// The number of bytes of a sequence that begins with `lead`, and the lowest scalar that needs as
// many; 0 for a byte that begins none.
struct Sequence {
  std::size_t length = 0;
  char32_t lowest = 0;
  char32_t leadBits = 0;
};

Sequence sequenceOf(unsigned char lead) {
  if (lead < 0x80) return {1, 0, lead};
  if ((lead & 0xE0) == 0xC0) return {2, 0x80, static_cast<char32_t>(lead & 0x1F)};
  if ((lead & 0xF0) == 0xE0) return {3, 0x800, static_cast<char32_t>(lead & 0x0F)};
  if ((lead & 0xF8) == 0xF0) return {4, firstSupplementary, static_cast<char32_t>(lead & 0x07)};
  return {};
}

void requireIndex(NSUInteger index, NSUInteger end, NSString* string) {
  if (index > end) {
    navora::objc::raise("NSRangeException", "index " + std::to_string(index) +
                                                " beyond the end of a string of " +
                                                std::to_string([string length]) + " units");
  }
}

}  // namespace

namespace navora::doubles {

std::u16string unitsOf(NSString* string) {
  std::u16string units(string.length, u'\0');
  if (!units.empty()) {
    [string getCharacters:reinterpret_cast<unichar*>(units.data())
                    range:NSMakeRange(0, units.size())];
  }
  return units;
}

NSString* stringOf(std::u16string_view units) {
  return [[NavoraString alloc] initWithUnits:std::u16string(units)];
}

std::optional<std::u16string> decodeUtf8(std::string_view text) {
  std::u16string units;
  while (!text.empty()) {
    const Sequence sequence = sequenceOf(static_cast<unsigned char>(text.front()));
    if (sequence.length == 0 || text.size() < sequence.length) return std::nullopt;
    char32_t scalar = sequence.leadBits;
    for (std::size_t index = 1; index < sequence.length; ++index) {
      const auto byte = static_cast<unsigned char>(text[index]);
      if ((byte & 0xC0) != 0x80) return std::nullopt;
      scalar = scalar << 6 | (byte & 0x3F);
    }
    const bool isSurrogate = scalar >= firstHighSurrogate && scalar < firstAfterSurrogates;
    if (scalar < sequence.lowest || isSurrogate || scalar >= firstInvalid) return std::nullopt;
    append(units, scalar);
    text.remove_prefix(sequence.length);
  }
  return units;
}

std::optional<std::string> encodeUtf8(std::u16string_view units) {
  std::string text;
  for (std::size_t index = 0; index < units.size(); ++index) {
    char32_t scalar = units[index];
    if (isHighSurrogate(units[index]) && index + 1 < units.size() &&
        isLowSurrogate(units[index + 1])) {
      scalar = firstSupplementary + ((scalar - firstHighSurrogate) << 10) +
               (units[++index] - firstLowSurrogate);
    } else if (scalar >= firstHighSurrogate && scalar < firstAfterSurrogates) {
      return std::nullopt;
    }
    append(text, scalar);
  }
  return text;
}

std::string utf8Of(NSString* string) {
  auto text = encodeUtf8(unitsOf(string));
  if (!text) objc::fail("a name contains half a surrogate pair");
  return *std::move(text);
}

NSString* stringFromUtf8(std::string_view text) {
  const auto units = decodeUtf8(text);
  if (!units) objc::fail("a name is not UTF-8");
  return stringOf(*units);
}

}  // namespace navora::doubles

@implementation NSString

// A class cluster: what is allocated is of a class of its own.
+ (instancetype)alloc {
  return self == [NSString class] ? [NavoraString alloc] : [super alloc];
}

+ (instancetype)string {
  return [[self alloc] init];
}

+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length {
  return stringOf({reinterpret_cast<const char16_t*>(characters), length});
}

+ (nullable instancetype)stringWithUTF8String:(const char*)text {
  return [[self alloc] initWithBytes:text length:std::strlen(text) encoding:NSUTF8StringEncoding];
}

- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding {
  if (encoding != NSUTF8StringEncoding) navora::objc::fail("an encoding that no double knows");
  auto units = decodeUtf8({static_cast<const char*>(bytes), length});
  // Documentation of -initWithBytes:length:encoding:: nil if the bytes are not of this encoding.
  if (!units) return nil;
  return [(NavoraString*)self initWithUnits:*std::move(units)];
}

- (NSUInteger)length {
  navora::objc::fail("-[NSString length] is abstract");
}

- (unichar)characterAtIndex:(NSUInteger)index {
  requireIndex(index + 1, self.length, self);
  unichar unit = 0;
  [self getCharacters:&unit range:NSMakeRange(index, 1)];
  return unit;
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
  navora::objc::fail("-[NSString getCharacters:range:] is abstract");
}

- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding {
  if (encoding != NSUTF8StringEncoding) navora::objc::fail("an encoding that no double knows");
  const auto text = encodeUtf8(unitsOf(self));
  return text ? [NSData dataWithBytes:text->data() length:text->size()] : nil;
}

// Literal, unit by unit: documentation of -isEqualToString:.
- (BOOL)isEqualToString:(NSString*)string {
  return self == string || (string != nil && unitsOf(self) == unitsOf(string));
}

- (BOOL)isEqual:(id)object {
  return [object isKindOfClass:[NSString class]] && [self isEqualToString:object];
}

- (NSUInteger)hash {
  return std::hash<std::u16string>()(unitsOf(self));
}

- (NSString*)description {
  return [self copy];
}

// Skips white space and ignores what follows the number; 0.0 if there is none: documentation of
// doubleValue. Decimal digits only.
- (double)doubleValue {
  std::string digits;
  for (const char16_t unit : unitsOf(self)) {
    const bool belongs = unit < 0x80 && (std::isdigit(unit) != 0 || unit == u'.' || unit == u'-' ||
                                         unit == u'+' || unit == u'e' || unit == u'E');
    const bool isBlank = unit < 0x80 && std::isspace(unit) != 0;
    if (isBlank && digits.empty()) continue;
    if (!belongs) break;
    digits.push_back(static_cast<char>(unit));
  }
  return std::strtod(digits.c_str(), nullptr);
}

// Of the letters of ASCII only, which identifiers consist of.
- (NSString*)lowercaseString {
  std::u16string units = unitsOf(self);
  for (char16_t& unit : units) {
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit - u'A' + u'a');
    if (unit >= 0x80) navora::objc::fail("lower case of letters beyond ASCII");
  }
  return stringOf(units);
}

- (NSString*)stringByReplacingOccurrencesOfString:(NSString*)target
                                       withString:(NSString*)replacement {
  const std::u16string units = unitsOf(self);
  const std::u16string from = unitsOf(target);
  const std::u16string to = unitsOf(replacement);
  if (from.empty()) return [self copy];
  std::u16string result;
  std::size_t position = 0;
  for (std::size_t found; (found = units.find(from, position)) != std::u16string::npos;) {
    result.append(units, position, found - position).append(to);
    position = found + from.size();
  }
  return stringOf(result.append(units, position));
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

- (id)mutableCopyWithZone:(nullable NSZone*)zone {
  NSMutableString* copy = [NSMutableString string];
  [copy replaceCharactersInRange:NSMakeRange(0, 0) withString:self];
  return copy;
}

@end

@implementation NavoraString {
  std::u16string _units;
}

- (instancetype)initWithUnits:(std::u16string)units {
  self = [super init];
  if (self != nil) _units = std::move(units);
  return self;
}

- (NSUInteger)length {
  return _units.size();
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
  requireIndex(range.location + range.length, _units.size(), self);
  _units.copy(reinterpret_cast<char16_t*>(buffer), range.length, range.location);
}

@end

@implementation NSMutableString {
  std::u16string _units;
}

// Called by the initialisers that NSString declares.
- (instancetype)initWithUnits:(std::u16string)units {
  self = [super init];
  if (self != nil) _units = std::move(units);
  return self;
}

- (NSUInteger)length {
  return _units.size();
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
  requireIndex(range.location + range.length, _units.size(), self);
  _units.copy(reinterpret_cast<char16_t*>(buffer), range.length, range.location);
}

- (void)replaceCharactersInRange:(NSRange)range withString:(NSString*)string {
  requireIndex(range.location + range.length, _units.size(), self);
  _units.replace(range.location, range.length, unitsOf(string));
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return stringOf(_units);
}

@end

@implementation NavoraLiteralString {
  // As clang writes a literal: its characters are ASCII or UTF-16. Source:
  // GetAddrOfConstantCFString in LLVM's clang/lib/CodeGen/CodeGenModule.cpp.
  int _flags;
  const void* _characters;
  long _length;
}

- (NSUInteger)length {
  return static_cast<NSUInteger>(_length);
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
  requireIndex(range.location + range.length, self.length, self);
  constexpr int isUtf16 = 0x10;
  if ((_flags & isUtf16) != 0) {
    std::memcpy(buffer, static_cast<const unichar*>(_characters) + range.location,
                range.length * sizeof(unichar));
    return;
  }
  const char* ascii = static_cast<const char*>(_characters) + range.location;
  for (NSUInteger index = 0; index < range.length; ++index) {
    buffer[index] = static_cast<unsigned char>(ascii[index]);
  }
}

@end

// The name by which literals refer to their class.
asm(".globl __CFConstantStringClassReference\n"
    ".set __CFConstantStringClassReference, \"OBJC_CLASS_$_NavoraLiteralString\"");

__attribute__((constructor(102))) static void makeLiteralsImmortal() {
  navora::objc::makeImmortal([NavoraLiteralString class]);
}

SEL NSSelectorFromString(NSString* name) {
  return sel_registerName(navora::doubles::utf8Of(name).c_str());
}

NSString* NSStringFromClass(Class type) {
  return [NSString stringWithUTF8String:class_getName(type)];
}

// Knows the one format of the host, an object alone.
void NSLog(NSString* format, ...) {
  if (![format isEqualToString:@"%@"]) navora::objc::fail("a log format that no double knows");
  va_list arguments;
  va_start(arguments, format);
  id object = va_arg(arguments, id);
  va_end(arguments);
  navora::doubles::FoundationState::shared().logged.push_back(
      navora::doubles::utf8Of([object description]));
}
