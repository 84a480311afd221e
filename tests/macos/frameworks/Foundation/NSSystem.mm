#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "frameworks/Foundation/FoundationState.h"
#include "frameworks/Foundation/MainLoop.h"
#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::FoundationState;
using navora::doubles::stringFromUtf8;
using navora::doubles::utf8Of;

NSNotificationName const NSSystemTimeZoneDidChangeNotification =
    @"NSSystemTimeZoneDidChangeNotification";

extern "C" char** environ;

namespace navora::doubles {

FoundationState& FoundationState::shared() {
  static auto& state = *[] {
    objc::whenTestEnds([] { FoundationState::shared() = FoundationState(); });
    return new FoundationState;
  }();
  return state;
}

void changeTimeZone(const std::string& identifier) {
  FoundationState::shared().timeZone = identifier;
  [[NSNotificationCenter defaultCenter] postNotificationName:NSSystemTimeZoneDidChangeNotification
                                                      object:nil];
}

}  // namespace navora::doubles

@implementation NSNotification

@synthesize name = _name, object = _object;

+ (instancetype)notificationWithName:(NSNotificationName)name object:(nullable id)object {
  NSNotification* notification = [[self alloc] init];
  notification->_name = [name copy];
  notification->_object = object;
  return notification;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSOperationQueue

+ (NSOperationQueue*)mainQueue {
  static NSOperationQueue* const queue = navora::objc::forever([[NSOperationQueue alloc] init]);
  return queue;
}

- (void)addOperationWithBlock:(void (^)(void))block {
  if (self != [NSOperationQueue mainQueue]) {
    navora::objc::fail("only the main operation queue runs anything");
  }
  dispatch_async(dispatch_get_main_queue(), block);
}

@end

// What -addObserverForName:object:queue:usingBlock: returns.
@interface NavoraNotificationObserver : NSObject
@property(nonatomic, copy) NSNotificationName name;
@property(nonatomic, unsafe_unretained) id object;
@property(nonatomic, strong) NSOperationQueue* queue;
@property(nonatomic, copy) void (^block)(NSNotification*);
@end

@implementation NavoraNotificationObserver
@end

@implementation NSNotificationCenter {
  std::vector<NavoraNotificationObserver*> _observers;
}

+ (NSNotificationCenter*)defaultCenter {
  static NSNotificationCenter* const center =
      navora::objc::forever([[NSNotificationCenter alloc] init]);
  return center;
}

// The center retains the observer until it is removed: documentation of the method.
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification*))block {
  NavoraNotificationObserver* observer = [[NavoraNotificationObserver alloc] init];
  observer.name = name;
  observer.object = object;
  observer.queue = queue;
  observer.block = block;
  _observers.push_back(observer);
  return observer;
}

- (void)removeObserver:(id)observer {
  std::erase(_observers, observer);
}

- (void)postNotificationName:(NSNotificationName)name object:(nullable id)object {
  NSNotification* notification = [NSNotification notificationWithName:name object:object];
  // A copy, because an observer may remove itself or others.
  const std::vector<NavoraNotificationObserver*> observers = _observers;
  for (NavoraNotificationObserver* observer : observers) {
    if (observer.name != nil && ![observer.name isEqualToString:name]) continue;
    if (observer.object != nil && observer.object != object) continue;
    if (observer.queue == nil) {
      observer.block(notification);
    } else {
      void (^block)(NSNotification*) = observer.block;
      [observer.queue addOperationWithBlock:^{
        block(notification);
      }];
    }
  }
}

@end

@implementation NSProcessInfo

+ (NSProcessInfo*)processInfo {
  static NSProcessInfo* const information = navora::objc::forever([[NSProcessInfo alloc] init]);
  return information;
}

- (NSDictionary<NSString*, NSString*>*)environment {
  NSMutableDictionary<NSString*, NSString*>* variables = [NSMutableDictionary dictionary];
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const std::size_t end = text.find('=');
    NSString* name = [NSString stringWithUTF8String:text.substr(0, end).c_str()];
    NSString* value = [NSString stringWithUTF8String:text.substr(end + 1).c_str()];
    if (name != nil && value != nil) variables[name] = value;
  }
  return variables;
}

@end

@implementation NSUUID

@synthesize UUIDString = _UUIDString;

// Version 4 of RFC 9562, in upper case: documentation of UUIDString.
+ (instancetype)UUID {
  static std::random_device random;
  char text[37];
  std::snprintf(text, sizeof text, "%08X-%04X-4%03X-%04X-%04X%08X", random(), random() & 0xFFFF,
                random() & 0xFFF, 0x8000 | (random() & 0x3FFF), random() & 0xFFFF, random());
  NSUUID* identifier = [[self alloc] init];
  identifier->_UUIDString = [NSString stringWithUTF8String:text];
  return identifier;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSLocale

+ (NSArray<NSString*>*)preferredLanguages {
  NSMutableArray<NSString*>* languages = [NSMutableArray array];
  for (const std::string& language : FoundationState::shared().preferredLanguages) {
    [languages addObject:stringFromUtf8(language)];
  }
  return languages;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSTimeZone

@synthesize name = _name;

// The zone that +systemTimeZone keeps returning until it is reset: documentation of the property.
static std::string& cachedTimeZone() {
  static auto& name = *[] {
    navora::objc::whenTestEnds([] { cachedTimeZone().clear(); });
    return new std::string;
  }();
  return name;
}

+ (NSTimeZone*)systemTimeZone {
  if (cachedTimeZone().empty()) cachedTimeZone() = FoundationState::shared().timeZone;
  NSTimeZone* zone = [[NSTimeZone alloc] init];
  zone->_name = stringFromUtf8(cachedTimeZone());
  return zone;
}

+ (void)resetSystemTimeZone {
  cachedTimeZone().clear();
  if (FoundationState::shared().resettingTimeZonePostsNotification) {
    [[NSNotificationCenter defaultCenter] postNotificationName:NSSystemTimeZoneDidChangeNotification
                                                        object:nil];
  }
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

namespace {

// Documentation of NSCocoaErrorDomain, "Cocoa Error Codes": no such file, no permission to write,
// file exists, other failures to write.
NSError* errorFromErrno(int code) {
  NSInteger cocoaCode = 512;
  if (code == ENOENT) cocoaCode = 4;
  if (code == EACCES || code == EPERM || code == EROFS) cocoaCode = 513;
  if (code == EEXIST) cocoaCode = 516;
  return [NSError errorWithDomain:NSCocoaErrorDomain code:cocoaCode userInfo:nil];
}

BOOL report(NSError* _Nullable* _Nullable error, int code) {
  if (code == 0) return YES;
  if (error != nullptr) *error = errorFromErrno(code);
  return NO;
}

}  // namespace

@implementation NSFileManager

+ (NSFileManager*)defaultManager {
  static NSFileManager* const manager = navora::objc::forever([[NSFileManager alloc] init]);
  return manager;
}

// Only the volume of `url` matters: documentation of the method.
- (nullable NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                          inDomain:(NSSearchPathDomainMask)domain
                 appropriateForURL:(nullable NSURL*)url
                            create:(BOOL)shouldCreate
                             error:(NSError* _Nullable* _Nullable)error {
  if (directory != NSItemReplacementDirectory || !shouldCreate) {
    navora::objc::fail("a directory that no double knows");
  }
  std::string folder = FoundationState::shared().temporaryItems / "NavoraReplacementXXXXXX";
  if (::mkdtemp(folder.data()) == nullptr) {
    report(error, errno);
    return nil;
  }
  return [NSURL fileURLWithPath:stringFromUtf8(folder)];
}

// Does not replace a file: documentation of the method.
- (BOOL)moveItemAtURL:(NSURL*)source
                toURL:(NSURL*)destination
                error:(NSError* _Nullable* _Nullable)error {
  const int result = ::renameat2(AT_FDCWD, utf8Of(source.path).c_str(), AT_FDCWD,
                                 utf8Of(destination.path).c_str(), RENAME_NOREPLACE);
  return report(error, result == 0 ? 0 : errno);
}

- (BOOL)removeItemAtURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)error {
  std::error_code code;
  const auto count = std::filesystem::remove_all(utf8Of(url.path), code);
  return report(error, !code && count == 0 ? ENOENT : code.value());
}

@end

@implementation NSBundle

+ (NSBundle*)mainBundle {
  static NSBundle* const bundle = navora::objc::forever([[NSBundle alloc] init]);
  return bundle;
}

- (nullable NSURL*)URLForResource:(nullable NSString*)name
                    withExtension:(nullable NSString*)extension {
  const auto& folder = FoundationState::shared().resources;
  const auto path = folder / (utf8Of(name) + "." + utf8Of(extension));
  std::error_code error;
  if (folder.empty() || !std::filesystem::exists(path, error)) return nil;
  return [NSURL fileURLWithPath:stringFromUtf8(path.string())];
}

- (nullable id)objectForInfoDictionaryKey:(NSString*)key {
  const auto& entries = FoundationState::shared().informationPropertyList;
  const auto found = entries.find(utf8Of(key));
  return found == entries.end() ? nil : stringFromUtf8(found->second);
}

@end

@implementation NSUserDefaults {
  NSMutableDictionary<NSString*, id>* _values;
}

+ (NSUserDefaults*)standardUserDefaults {
  static NSUserDefaults* const defaults = [] {
    navora::objc::whenTestEnds([] { [NSUserDefaults standardUserDefaults]->_values = nil; });
    return navora::objc::forever([[NSUserDefaults alloc] init]);
  }();
  return defaults;
}

// Property lists only: documentation of -setObject:forKey:.
static bool isPropertyList(id object) {
  if ([object isKindOfClass:[NSArray class]]) {
    for (id element in object) {
      if (!isPropertyList(element)) return false;
    }
    return true;
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    for (id key in object) {
      if (![key isKindOfClass:[NSString class]] || !isPropertyList(object[key])) return false;
    }
    return true;
  }
  return [object isKindOfClass:[NSString class]] || [object isKindOfClass:[NSNumber class]] ||
         [object isKindOfClass:[NSData class]];
}

- (nullable id)objectForKey:(NSString*)name {
  return _values[name];
}

- (void)setObject:(nullable id)value forKey:(NSString*)name {
  if (value != nil && !isPropertyList(value)) {
    navora::objc::raise("NSInvalidArgumentException", "Attempt to insert non-property list object");
  }
  if (_values == nil) _values = [NSMutableDictionary dictionary];
  _values[name] = [value copy];
}

- (void)removeObjectForKey:(NSString*)name {
  _values[name] = nil;
}

@end
