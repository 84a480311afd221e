#pragma once

#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <sys/types.h>

namespace navora {

// What libraries share that are preloaded to stand before functions of the C library.

// Returns the function of this name that the library stands before.
template <class Function>
Function nextFunction(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

// Returns the mode that open() has been given, or 0 if these flags take none.
inline mode_t openMode(int flags, va_list arguments) {
  const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return creates ? va_arg(arguments, mode_t) : 0;
}

}  // namespace navora
