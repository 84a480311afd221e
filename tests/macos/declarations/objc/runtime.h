#pragma once

#import <objc/objc.h>
#include <stddef.h>

// The runtime's functions that the doubles and the tests use. See Apple developer documentation,
// Objective-C Runtime.

typedef void (*IMP)(void);

enum objc_AssociationPolicy : unsigned long {
  OBJC_ASSOCIATION_ASSIGN = 0,
  OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1,
  OBJC_ASSOCIATION_COPY_NONATOMIC = 3,
  OBJC_ASSOCIATION_RETAIN = 01401,
  OBJC_ASSOCIATION_COPY = 01403,
};
typedef enum objc_AssociationPolicy objc_AssociationPolicy;

extern "C" {
SEL _Nonnull sel_registerName(const char* _Nonnull name);
const char* _Nonnull sel_getName(SEL _Nonnull selector);

Class _Nullable object_getClass(id _Nullable object);
const char* _Nonnull class_getName(Class _Nullable type);
Class _Nullable class_getSuperclass(Class _Nullable type);
size_t class_getInstanceSize(Class _Nullable type);
BOOL class_respondsToSelector(Class _Nullable type, SEL _Nullable selector);
BOOL class_conformsToProtocol(Class _Nullable type, Protocol* _Nullable protocol);
id _Nullable class_createInstance(Class _Nullable type, size_t extraBytes);
Class _Nullable objc_getClass(const char* _Nonnull name);
const char* _Nonnull protocol_getName(Protocol* _Nonnull protocol);

void objc_setAssociatedObject(id _Nonnull object, const void* _Nonnull key, id _Nullable value,
                              objc_AssociationPolicy policy);
id _Nullable objc_getAssociatedObject(id _Nonnull object, const void* _Nonnull key);
}
