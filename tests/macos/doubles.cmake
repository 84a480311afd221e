# The macOS host, run on Linux: on an Objective-C runtime (runtime/) and doubles of the frameworks
# (frameworks/) of our own. Compiled by clang with the sanitizers; the core and the test libraries are
# those that the compiler of the build has made, with which clang shares the standard library.
set(CMAKE_OBJCXX_COMPILER "${NAVORA_CLANGXX}")
set(CMAKE_OBJCXX_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
enable_language(OBJCXX)
enable_language(ASM)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_FLAGS_DEBUG "${CMAKE_CXX_FLAGS_DEBUG}")
find_library(NAVORA_BLOCKS_LIBRARY BlocksRuntime REQUIRED)

# Without the checks that compare types across files: g++ writes none of what they read, and to clang a
# pointer to an object is another type with automatic reference counting than without.
set(sanitizers -fsanitize=address,undefined -fno-sanitize=vptr,function -fno-sanitize-recover=all)
# The options of the host, without the warnings that only g++ knows and those that ask of every pointer in
# a source, which is included here, whether it may be nil.
set(options -fblocks -fobjc-runtime=macosx-13 ${navora_macos_compile_options} ${sanitizers}
  -fno-omit-frame-pointer -Wno-unknown-warning-option
  -Wno-nullability-completeness -Wno-nullability-completeness-on-arrays)
add_library(navora_macos_doubles INTERFACE)
target_include_directories(navora_macos_doubles INTERFACE "${CMAKE_CURRENT_SOURCE_DIR}")
target_compile_options(navora_macos_doubles INTERFACE
  "$<$<COMPILE_LANGUAGE:OBJCXX>:${options}>"
  "$<$<COMPILE_LANGUAGE:OBJCXX>:SHELL:-isystem \"${declarations}\">")
target_link_options(navora_macos_doubles INTERFACE ${sanitizers})
target_link_libraries(navora_macos_doubles INTERFACE navora_warnings "${NAVORA_BLOCKS_LIBRARY}")

# navora_macos_objects(NAME SOURCES file... [OPTIONS option...] [LIBRARIES target...])
#
# Compiles the sources as one translation unit.
function(navora_macos_objects name)
  cmake_parse_arguments(OBJECTS "" "" "SOURCES;OPTIONS;LIBRARIES" ${ARGN})
  list(TRANSFORM OBJECTS_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" REGEX "^[^/]")
  write_unit(unit ${name}.mm "${OBJECTS_SOURCES}")
  add_library(navora_macos_${name} OBJECT "${unit}")
  # After the options of every target.
  set_source_files_properties("${unit}" PROPERTIES COMPILE_OPTIONS "${OBJECTS_OPTIONS}")
  target_link_libraries(navora_macos_${name} PRIVATE ${OBJECTS_LIBRARIES} navora_macos_doubles)
endfunction()

# The runtime counts references itself.
navora_macos_objects(runtime
  SOURCES runtime/Classes.mm runtime/NSObject.mm runtime/Properties.mm runtime/References.mm
  OPTIONS -fno-objc-arc)
target_sources(navora_macos_runtime PRIVATE runtime/MessageSend.S)

navora_macos_objects(foundation
  SOURCES frameworks/Foundation/Dispatch.mm frameworks/Foundation/KeyValueObserving.mm
          frameworks/Foundation/NSCollections.mm frameworks/Foundation/NSString.mm
          frameworks/Foundation/NSSystem.mm frameworks/Foundation/NSURL.mm
          frameworks/Foundation/NSURLSession.mm frameworks/Foundation/NSValues.mm
          frameworks/Foundation/OnceHandler.mm
  LIBRARIES navora_test_support)

# Of these frameworks only what the code under test needs. A method that is declared but not
# implemented ends the process when it is called.
navora_macos_objects(appkit
  SOURCES frameworks/AppKit/NSMenu.mm frameworks/AppKit/NSWorkspace.mm frameworks/Carbon/Carbon.mm
          frameworks/UserNotifications/UserNotifications.mm
  OPTIONS -Wno-incomplete-implementation -Wno-objc-designated-initializers -Wno-protocol
          -Wno-objc-property-implementation)

# The parts of the host that run: all of system and notifications, the menus, and what replaces files.
function(navora_macos_host_objects module)
  get_target_property(sources navora_macos_${module}_sources INTERFACE_SOURCES)
  if(ARGN)
    list(TRANSFORM ARGN PREPEND "${PROJECT_SOURCE_DIR}/src/hosts/macos/${module}/" OUTPUT_VARIABLE sources)
  endif()
  navora_macos_objects(host_${module} SOURCES ${sources})
  target_include_directories(navora_macos_host_${module} PRIVATE
    $<TARGET_PROPERTY:navora_macos_${module}_sources,INTERFACE_INCLUDE_DIRECTORIES>)
endfunction()
navora_macos_host_objects(application AppKitMenus.mm)
navora_macos_host_objects(notifications)
navora_macos_host_objects(system)
navora_macos_host_objects(web ReplacementFolder.mm)

# The tests, in one executable. A class of which other files see no instance variables has a file of
# its own.
navora_macos_objects(sliding SOURCES runtime/tests/Sliding.mm)
navora_macos_objects(runtime_tests
  SOURCES runtime/tests/ClassTest.mm runtime/tests/MessageTest.mm runtime/tests/ReferenceTest.mm
          support/main.mm
  LIBRARIES GTest::gmock)
file(GLOB_RECURSE host_tests CONFIGURE_DEPENDS
  "${CMAKE_CURRENT_SOURCE_DIR}/frameworks/tests/*.mm" "${CMAKE_CURRENT_SOURCE_DIR}/host/*.mm")
navora_macos_objects(host_tests_unit
  SOURCES ${host_tests} support/MainLoop.mm
  LIBRARIES navora_fakes navora_core navora_test_support GTest::gmock)

add_executable(navora_macos_host_tests)
target_link_libraries(navora_macos_host_tests PRIVATE
  navora_macos_runtime navora_macos_foundation navora_macos_appkit
  navora_macos_host_application navora_macos_host_notifications navora_macos_host_system navora_macos_host_web
  navora_macos_sliding navora_macos_runtime_tests navora_macos_host_tests_unit
  navora_fakes navora_core navora_test_support GTest::gmock)
set_target_properties(navora_macos_host_tests PROPERTIES LINKER_LANGUAGE OBJCXX)

# navora_macos_suites(NAME FILTER): one entry for the suites that match, in one process.
function(navora_macos_suites name filter)
  add_check(macos.${name} navora_macos_host_tests "--gtest_filter=${filter}")
  set_tests_properties(macos.${name} PROPERTIES TIMEOUT 120)
endfunction()
navora_macos_suites(runtime "ObjectiveC*")
navora_macos_suites(frameworks "*Double*")
navora_macos_suites(host "*-ObjectiveC*:*Double*")

# No machine here runs the entry points for Apple silicon.
add_check(macos.runtime.arm64_assembles ${NAVORA_CLANGXX} --target=aarch64-linux-gnu
  -c "${CMAKE_CURRENT_SOURCE_DIR}/runtime/MessageSend.S" -o "${units}/MessageSend.arm64.o")
