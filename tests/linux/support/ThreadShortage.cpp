#include "linux/support/ThreadShortage.h"

#include <atomic>
#include <cerrno>

#include <dlfcn.h>
#include <glib.h>
#include <pthread.h>

#include "linux/support/MainLoop.h"

namespace navora {
namespace {

std::atomic<bool> shortage = false;
std::atomic<int> refusals = 0;

}  // namespace

ThreadShortage::ThreadShortage() : maximumIdleThreads_(g_thread_pool_get_max_unused_threads()) {
  g_thread_pool_set_max_unused_threads(0);
  waitUntil([] { return g_thread_pool_get_num_unused_threads() == 0; });
  refusals = 0;
  shortage = true;
}

ThreadShortage::~ThreadShortage() {
  shortage = false;
  g_thread_pool_set_max_unused_threads(maximumIdleThreads_);
}

int ThreadShortage::refused() const {
  return refusals;
}

}  // namespace navora

// Takes the place of the C library's function for all libraries of the process.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*start)(void*), void* argument) noexcept {
  if (navora::shortage) {
    ++navora::refusals;
    return EAGAIN;
  }
  static const auto real =
      reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  return real(thread, attributes, start, argument);
}
