# A module is one folder of src/ with one subject. It may include only its own headers and those of the
# modules that it names: each module gets an include root in the build tree that holds nothing but a
# link to the module's folder, so a forbidden #include does not compile.

# Creates an include root in which the folder SOURCE appears as PATH, and adds it to TARGET.
function(navora_include_root target scope path source)
  set(root "${CMAKE_BINARY_DIR}/include_roots/${target}")
  cmake_path(GET path PARENT_PATH parent)
  file(MAKE_DIRECTORY "${root}/${parent}")
  file(CREATE_LINK "${source}" "${root}/${path}" SYMBOLIC)
  target_include_directories(${target} ${scope} "${root}")
endfunction()

# Excludes the sources that include X11's headers from unity builds: these define macros such as None,
# Status, Success and Bool, which break the sources compiled after them.
function(navora_compile_x11_sources_alone)
  foreach(source IN LISTS ARGN)
    file(STRINGS "${source}" x11_includes REGEX "^#include <(X11/|gdk/gdkx\\.h)")
    if(x11_includes)
      set_property(SOURCE "${source}" PROPERTY SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
endfunction()

# navora_module(NAME SOURCES file... [USES module...] [LIBRARIES target...])
#
# A module of the core, in src/NAME. Others see its headers through the target `navora_NAME`; its
# objects become part of the static library `navora_core`.
define_property(GLOBAL PROPERTY NAVORA_CORE_MODULES BRIEF_DOCS "The modules that make up navora_core")

function(navora_module name)
  cmake_parse_arguments(MODULE "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  set(folder "${PROJECT_SOURCE_DIR}/src/${name}")
  list(TRANSFORM MODULE_USES PREPEND navora_)
  add_library(navora_${name} INTERFACE)
  navora_include_root(navora_${name} INTERFACE ${name} "${folder}")
  target_link_libraries(navora_${name} INTERFACE ${MODULE_USES} ${MODULE_LIBRARIES})

  list(TRANSFORM MODULE_SOURCES PREPEND "${folder}/")
  add_library(navora_${name}_objects OBJECT ${MODULE_SOURCES})
  target_link_libraries(navora_${name}_objects PRIVATE navora_${name} navora_warnings)
  set_property(GLOBAL APPEND PROPERTY NAVORA_CORE_MODULES ${name})
endfunction()

# Gathers the modules of the core into the static library `navora_core`, with src/ as its one include
# root for programs outside this repository.
function(navora_core)
  get_property(modules GLOBAL PROPERTY NAVORA_CORE_MODULES)
  add_library(navora_core STATIC)
  target_include_directories(navora_core PUBLIC "${PROJECT_SOURCE_DIR}/src")
  foreach(module IN LISTS modules)
    target_sources(navora_core PRIVATE $<TARGET_OBJECTS:navora_${module}_objects>)
  endforeach()
  target_link_libraries(navora_core PUBLIC ${ARGN})
  set_target_properties(navora_core PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

# navora_host_module(HOST FOLDER SOURCES file... [USES module...] [USES_PRIVATELY module...]
#                    [LIBRARIES target...] [LIBRARIES_PRIVATELY target...])
#
# A module of a host, in src/hosts/HOST/FOLDER: the static library `navora_HOST_FOLDER`. Modules are
# named as in the target without the prefix: "platform", "linux_web". USES are those that its headers
# include, which users of the module may therefore include too; USES_PRIVATELY those that only its
# sources include.
function(navora_host_module host folder)
  cmake_parse_arguments(MODULE "" "" "SOURCES;USES;USES_PRIVATELY;LIBRARIES;LIBRARIES_PRIVATELY" ${ARGN})
  set(target navora_${host}_${folder})
  list(TRANSFORM MODULE_USES PREPEND navora_)
  list(TRANSFORM MODULE_USES_PRIVATELY PREPEND navora_)
  list(TRANSFORM MODULE_SOURCES PREPEND "${folder}/")
  navora_compile_x11_sources_alone(${MODULE_SOURCES})
  add_library(${target} STATIC ${MODULE_SOURCES})
  navora_include_root(${target} PUBLIC hosts/${host}/${folder} "${CMAKE_CURRENT_SOURCE_DIR}/${folder}")
  target_link_libraries(${target}
    PUBLIC ${MODULE_USES} ${MODULE_LIBRARIES} $<LINK_ONLY:navora_core>
    PRIVATE ${MODULE_USES_PRIVATELY} ${MODULE_LIBRARIES_PRIVATELY} navora_warnings)
endfunction()
