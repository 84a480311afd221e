#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#import <objc/runtime.h>

// A small Objective-C runtime for the code that clang emits with -fobjc-runtime=macosx, so that the
// macOS host can be run on Linux. This is what the doubles of the frameworks and the tests need of
// it beside the language; the compiler calls the rest.
//
// What a program must not do ends the process with a message that names the class: a message that
// no method answers or that is sent to a deallocated object, a release too many, a weak reference
// to an object that is being deallocated.

namespace navora::objc {

// Writes "Objective-C: " and `message` to standard error and ends the process.
[[noreturn]] void fail(const std::string& message);

// What the frameworks report by raising an exception, which no program of ours handles.
[[noreturn]] void raise(const std::string& exception, const std::string& reason);

// Begins and ends an autorelease pool, which need not be in one function as @autoreleasepool does.
extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void* pool);

// Excludes an object from the instances that count as leaked: it is meant to live as long as the
// process, as a shared instance is. Returns the object.
id keepForever(id object);
template <typename Object>
Object* forever(Object* object) {
  return static_cast<Object*>(keepForever(object));
}

// Makes the instances of a class live as long as the process: literals, which are no allocations.
void makeImmortal(Class type);

// The instances of now, for unexpectedInstances().
std::size_t instanceMark();
// Returns the class names of the instances that were made since `mark` and still exist, sorted,
// except those that are to live forever.
std::vector<std::string> instancesSince(std::size_t mark);

// Calls `reset` when a test has ended, before its instances are counted: shared instances return to
// their initial state. What was registered last is reset first.
void whenTestEnds(std::function<void()> reset);
void resetSharedInstances();

// Adds to what the check at the end of a test reports as its failures: what a program has left
// behind where no instance shows it.
void complain(const std::string& problem);
std::vector<std::string> takeComplaints();

// Calls `hook` before an object is deallocated, while it is still whole.
void beforeDeallocation(std::function<void(id)> hook);

// The class that a deallocated object had; nullptr for any other object.
const char* deallocatedClassName(const void* object);

std::string className(id object);

}  // namespace navora::objc
