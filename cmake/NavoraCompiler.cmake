# Compiler settings shared by every target of ours: link `navora_warnings` to get them.
add_library(navora_warnings INTERFACE)
target_compile_options(navora_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # False alarms of g++ 12 when it optimises: overlapping copies and copies out of bounds in
  # std::string's own code (GCC bug 105651) and the empty half of a std::optional (GCC bug 80635).
  target_compile_options(navora_warnings INTERFACE
    -Wno-restrict -Wno-maybe-uninitialized
    "$<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds;-Wno-stringop-overflow>")
endif()

if(NAVORA_SANITIZE)
  # No check of the types behind virtual calls: the web engine, which is built without type
  # information, uses our copies of the standard library's inline functions with objects of its own.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(NAVORA_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(NAVORA_CCACHE ccache)
if(NAVORA_CCACHE)
  # Paths below the source tree count as relative ones, so that build trees of several clones share
  # the cache. Precompiled headers are only cacheable when ccache may ignore their time stamps.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      "${NAVORA_CCACHE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
  else()
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>")
  endif()
endif()
