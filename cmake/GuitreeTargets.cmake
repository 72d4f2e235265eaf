# How this project declares its libraries, programs, tests and benchmarks: one call each.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

add_library(guitree_warnings INTERFACE)
target_compile_options(
  guitree_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Woverloaded-virtual
            -Wcast-align
            -Wformat=2
            -Wimplicit-fallthrough
            -Wextra-semi
            $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
            $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
            $<$<BOOL:${GUITREE_WARNINGS_AS_ERRORS}>:-Werror>)

# guitree_add_library(NAME
#   HEADER_DIR dir        public headers: every *.h below it, and the folder that users include from; default: none of
#                         its own
#   HEADER_FOLDERS names  only the headers in these folders of it; default: all
#   SOURCES files...      without any the library is an interface library
#   INSTALL_DIR dir       where the headers go below the include folder of the prefix; default: its root
#   LINK targets...       what the public headers need (guitree::x are our own libraries)
#   LINK_PRIVATE targets  what the sources alone need
#   PACKAGES names...     packages that a user of the installed library must find as well)
#
# Declares the static library NAME with the alias guitree::NAME, builds it with our warnings, and installs it
# with its headers as component NAME of the package guitree. In kernel/CMakeLists.txt:
#
#   guitree_add_library(kernel HEADER_DIR . INSTALL_DIR guitree-kernel SOURCES du/Symbol.cpp ...)
#
# Headers that are not public stay beside the sources, outside HEADER_DIR; target_include_directories(... PRIVATE)
# reaches them.
function(guitree_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "HEADER_DIR;INSTALL_DIR" "HEADER_FOLDERS;SOURCES;LINK;LINK_PRIVATE;PACKAGES")
  if(arg_HEADER_DIR)
    cmake_path(ABSOLUTE_PATH arg_HEADER_DIR NORMALIZE OUTPUT_VARIABLE header_dir)
    set(header_globs "${header_dir}/*.h")
  endif()
  if(arg_HEADER_FOLDERS)
    list(TRANSFORM arg_HEADER_FOLDERS REPLACE "(.+)" "${header_dir}/\\1/*.h" OUTPUT_VARIABLE header_globs)
  endif()
  set(headers)
  if(header_globs)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${header_globs})
  endif()

  set(scope PUBLIC)
  if(arg_SOURCES)
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK_PRIVATE} $<BUILD_INTERFACE:guitree_warnings>)
    target_compile_options(${name} PRIVATE ${GUITREE_LIBRARY_OPTIONS})
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  add_library(guitree::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME $<IF:$<STREQUAL:${name},guitree>,guitree,guitree-${name}>)
  target_compile_features(${name} ${scope} cxx_std_20)
  target_link_libraries(${name} ${scope} ${arg_LINK})
  set(header_install)
  if(headers)
    target_sources(${name} ${scope} FILE_SET HEADERS BASE_DIRS "${header_dir}" FILES ${headers})
    set(header_install FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${arg_INSTALL_DIR}")
  endif()

  install(TARGETS ${name} EXPORT guitree-${name} ${header_install})
  install(
    EXPORT guitree-${name}
    NAMESPACE guitree::
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/guitree")

  set(needs ${arg_LINK} ${arg_LINK_PRIVATE})
  list(FILTER needs INCLUDE REGEX "^guitree::")
  list(TRANSFORM needs REPLACE "^guitree::" "")
  set_property(GLOBAL APPEND PROPERTY GUITREE_COMPONENTS ${name})
  set_property(GLOBAL PROPERTY GUITREE_NEEDS_${name} "${needs}")
  set_property(GLOBAL PROPERTY GUITREE_PACKAGES_${name} "${arg_PACKAGES}")
endfunction()

# guitree_add_executable(NAME SOURCES files... LINK targets... [INSTALL]): a program built with our warnings.
function(guitree_add_executable name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "INSTALL" "" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINK} guitree_warnings)
  if(arg_INSTALL)
    install(TARGETS ${name})
  endif()
endfunction()

# guitree_add_test(NAME SOURCES files... LINK targets... LABELS labels...): a GoogleTest program, each of whose
# tests CTest runs by itself. The label "threads" marks programs that run under ThreadSanitizer as well.
# Tests are listed when CTest starts, not when the program is linked: a program that crashes at its start then
# fails the test run and not the build.
function(guitree_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK;LABELS")
  guitree_add_executable(${name} SOURCES ${arg_SOURCES} LINK ${arg_LINK} GTest::gmock GTest::gtest_main)
  set(properties TIMEOUT 300)
  if(arg_LABELS)
    list(PREPEND properties LABELS "${arg_LABELS}")
  endif()
  gtest_discover_tests(
    ${name}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    PROPERTIES ${properties})
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(guitree_thread_tests ${name})
  endif()
endfunction()

# guitree_add_bench(NAME SOURCES files... LINK targets...): a Google Benchmark program, found by ./dev bench.
function(guitree_add_bench name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  guitree_add_executable(${name} SOURCES ${arg_SOURCES} LINK ${arg_LINK} benchmark::benchmark)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${guitree_BINARY_DIR}/bench")
endfunction()

if(GUITREE_BUILD_TESTS)
  include(GoogleTest)
  add_custom_target(guitree_thread_tests)
endif()
