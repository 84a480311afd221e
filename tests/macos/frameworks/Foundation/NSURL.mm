#include <cctype>
#include <filesystem>
#include <string>

#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::stringFromUtf8;
using navora::doubles::utf8Of;

namespace {

bool isHexadecimal(char character) {
  return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

bool isUnreserved(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 ||
         std::string_view("-._~").find(character) != std::string_view::npos;
}

// Whether a URL may consist of these characters (RFC 3986, section 2).
bool isUrlText(std::string_view text) {
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char character = text[index];
    if (character == '%') {
      if (index + 2 >= text.size() || !isHexadecimal(text[index + 1]) ||
          !isHexadecimal(text[index + 2])) {
        return false;
      }
    } else if (!isUnreserved(character) &&
               std::string_view(":/?#[]@!$&'()*+,;=").find(character) == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

std::string percentEncodedPath(std::string_view path) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char character : path) {
    if (isUnreserved(character) || character == '/') {
      result += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      result += {'%', digits[byte >> 4], digits[byte & 0xF]};
    }
  }
  return result;
}

std::string percentDecoded(std::string_view text) {
  std::string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '%') {
      result += static_cast<char>(std::stoi(std::string(text.substr(index + 1, 2)), nullptr, 16));
      index += 2;
    } else {
      result += text[index];
    }
  }
  return result;
}

// The path of an absolute URL, still encoded.
std::string_view encodedPath(std::string_view url) {
  const std::size_t authority = url.find("://");
  if (authority == std::string_view::npos) return {};
  url.remove_prefix(authority + 3);
  url = url.substr(0, url.find_first_of("?#"));
  const std::size_t path = url.find('/');
  return path == std::string_view::npos ? std::string_view() : url.substr(path);
}

}  // namespace

@implementation NSURL {
  std::string _text;
}

+ (nullable instancetype)URLWithString:(NSString*)string {
  const std::string text = utf8Of(string);
  // The documentation of +URLWithString: says of both that the result is nil; since macOS 14 other
  // characters are percent-encoded instead, which no caller may rely on before.
  if (text.empty() || !isUrlText(text)) return nil;
  return [self urlWithText:text];
}

// Takes any text, as the documentation of this method says.
+ (NSURL*)URLWithDataRepresentation:(NSData*)data relativeToURL:(nullable NSURL*)baseURL {
  return [self urlWithText:std::string(static_cast<const char*>(data.bytes), data.length)];
}

+ (instancetype)urlWithText:(const std::string&)text {
  NSURL* url = [[self alloc] init];
  url->_text = text;
  return url;
}

// Appends a solidus to the path of a folder that exists: documentation of +fileURLWithPath:.
+ (NSURL*)fileURLWithPath:(NSString*)path {
  const std::filesystem::path absolute = std::filesystem::absolute(utf8Of(path));
  std::string text = absolute.string();
  std::error_code error;
  if (!text.ends_with('/') && std::filesystem::is_directory(absolute, error)) text += '/';
  return [self urlWithText:"file://" + percentEncodedPath(text)];
}

- (nullable NSString*)absoluteString {
  return stringFromUtf8(_text);
}

// Decoded, and without the solidus at its end: documentation of the property.
- (nullable NSString*)path {
  std::string path = percentDecoded(encodedPath(_text));
  if (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return stringFromUtf8(path);
}

- (BOOL)isEqual:(id)object {
  return [object isKindOfClass:[NSURL class]] && _text == ((NSURL*)object)->_text;
}

- (NSUInteger)hash {
  return std::hash<std::string>()(_text);
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSURLRequest {
 @package
  NSURL* _URL;
  NSURLRequestCachePolicy _cachePolicy;
  NSTimeInterval _timeoutInterval;
  NSString* _HTTPMethod;
  NSData* _HTTPBody;
  NSMutableDictionary<NSString*, NSString*>* _fields;
}

@synthesize URL = _URL, cachePolicy = _cachePolicy, timeoutInterval = _timeoutInterval,
            HTTPMethod = _HTTPMethod, HTTPBody = _HTTPBody;

+ (instancetype)requestWithURL:(NSURL*)url
                   cachePolicy:(NSURLRequestCachePolicy)cachePolicy
               timeoutInterval:(NSTimeInterval)timeoutInterval {
  NSURLRequest* request = [[self alloc] init];
  request->_URL = [url copy];
  request->_cachePolicy = cachePolicy;
  request->_timeoutInterval = timeoutInterval;
  request->_HTTPMethod = @"GET";
  request->_fields = [NSMutableDictionary dictionary];
  return request;
}

- (NSDictionary<NSString*, NSString*>*)allHTTPHeaderFields {
  return [_fields copy];
}

- (void)copyTo:(NSURLRequest*)copy {
  copy->_URL = _URL;
  copy->_cachePolicy = _cachePolicy;
  copy->_timeoutInterval = _timeoutInterval;
  copy->_HTTPMethod = _HTTPMethod;
  copy->_HTTPBody = _HTTPBody;
  copy->_fields = [_fields mutableCopy];
}

- (id)copyWithZone:(nullable NSZone*)zone {
  NSURLRequest* copy = [[NSURLRequest alloc] init];
  [self copyTo:copy];
  return copy;
}

@end

@implementation NSMutableURLRequest

@dynamic HTTPMethod, HTTPBody;

- (void)setHTTPMethod:(NSString*)method {
  _HTTPMethod = [method copy];
}

- (void)setHTTPBody:(nullable NSData*)body {
  _HTTPBody = [body copy];
}

// Replaces the field of that name, in whatever case: documentation of
// -setValue:forHTTPHeaderField:.
- (void)setValue:(nullable NSString*)value forHTTPHeaderField:(NSString*)field {
  NSString* lowercase = field.lowercaseString;
  NSString* present = nil;
  for (NSString* name in _fields) {
    if ([name.lowercaseString isEqualToString:lowercase]) present = name;
  }
  if (present != nil) _fields[present] = nil;
  _fields[field] = [value copy];
}

@end

@implementation NSURLResponse {
 @package
  NSURL* _URL;
}

@synthesize URL = _URL;

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSHTTPURLResponse

@synthesize statusCode = _statusCode;

- (nullable instancetype)initWithURL:(NSURL*)url
                          statusCode:(NSInteger)statusCode
                         HTTPVersion:(nullable NSString*)version
                        headerFields:(nullable NSDictionary<NSString*, NSString*>*)headerFields {
  self = [super init];
  if (self != nil) {
    _URL = url;
    _statusCode = statusCode;
  }
  return self;
}

@end
