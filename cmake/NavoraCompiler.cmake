# Compiler and linker settings of the whole build. Every target of ours links `navora_warnings`.

add_library(navora_warnings INTERFACE)
target_compile_options(navora_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # False positives of g++ 12 when it optimises: overlapping and out-of-bounds copies in
    # std::string's own code (GCC bug 105651) and the empty half of a std::optional (GCC bug 80635).
    target_compile_options(navora_warnings INTERFACE
      -Wno-restrict -Wno-maybe-uninitialized
      "$<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds;-Wno-stringop-overflow>")
  endif()
  if(CMAKE_UNITY_BUILD)
    # Warns about types with members from an anonymous namespace, unless the compiled file itself
    # defines them. In a unity build every source is an included file.
    target_compile_options(navora_warnings INTERFACE -Wno-subobject-linkage)
  endif()
endif()

if(NAVORA_SANITIZE)
  # Leave out the check of the types behind virtual calls: the web engine is built without type
  # information and uses our copies of the standard library's inline functions on its own objects.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(NAVORA_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

# Hardening of what users run.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT NAVORA_SANITIZE AND NOT NAVORA_BUILD_FUZZERS)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_compile_options("$<$<CONFIG:Release>:-fstack-protector-strong;-fstack-clash-protection>"
                      # Some distributions' compilers define it already.
                      "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
  add_link_options("$<$<CONFIG:Release>:LINKER:-z,relro;LINKER:-z,now>")
endif()

# mold links in a fraction of the time of the default linker.
find_program(NAVORA_MOLD mold)
if(NAVORA_MOLD AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_link_options("$<$<CONFIG:Debug>:-fuse-ld=mold>")
endif()

find_program(NAVORA_CCACHE ccache)
if(NAVORA_CCACHE)
  # Paths below the source tree are hashed as relative ones, so that several clones share the cache.
  # Precompiled headers are cacheable only if ccache may ignore their time stamps.
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
