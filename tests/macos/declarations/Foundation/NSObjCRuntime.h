#pragma once

#include <stdint.h>

#import <objc/objc.h>

typedef long NSInteger;
typedef unsigned long NSUInteger;

struct NSRange {
  NSUInteger location;
  NSUInteger length;
};
typedef struct NSRange NSRange;
static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
  return NSRange{location, length};
}

#define FOUNDATION_EXPORT extern "C"
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))

#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
// A plain integer in C++, so that options can be combined with |.
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type
