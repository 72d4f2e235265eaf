# Options, and the third-party packages behind them. Every option is on where its packages are found;
# asking for one whose package is missing stops the configuration instead of quietly building less.

find_package(OpenCASCADE QUIET CONFIG)
find_package(Qt6 QUIET COMPONENTS Core Gui Widgets Svg)
find_package(CLI11 QUIET CONFIG)
find_package(utf8proc QUIET MODULE)
find_package(GTest QUIET CONFIG)
find_package(rapidcheck QUIET CONFIG)
find_package(benchmark QUIET CONFIG)
find_package(Threads REQUIRED)

# guitree_option(NAME TEXT DEFAULT PACKAGES...): an option that is DEFAULT where all PACKAGES are found. What is off for
# want of a package is not remembered, so that a package installed later turns it on.
function(guitree_option name text default)
  set(missing "")
  foreach(package IN LISTS ARGN)
    if(NOT ${package}_FOUND)
      list(APPEND missing ${package})
    endif()
  endforeach()
  if(NOT missing)
    option(${name} "${text}" ${default})
  elseif(${name})
    message(FATAL_ERROR "${name} is ON but these packages were not found: ${missing}")
  else()
    set(${name} OFF PARENT_SCOPE)
  endif()
endfunction()

guitree_option(GUITREE_WARNINGS_AS_ERRORS "Treat warnings in guitree's own code as errors" ${PROJECT_IS_TOP_LEVEL})
guitree_option(GUITREE_WITH_STEPIMPORT "Build the STEP importer" ${PROJECT_IS_TOP_LEVEL} OpenCASCADE)
guitree_option(GUITREE_WITH_QT "Build what needs Qt 6" ${PROJECT_IS_TOP_LEVEL} Qt6)
guitree_option(GUITREE_WITH_STRUCTUREFILTER "Build the structure filter" ${PROJECT_IS_TOP_LEVEL} utf8proc)
guitree_option(GUITREE_WITH_KERNELCONTRACT "Build the contract test suite for kernels" ${PROJECT_IS_TOP_LEVEL} GTest)
guitree_option(GUITREE_BUILD_APPS "Build the applications" ${PROJECT_IS_TOP_LEVEL} CLI11)
guitree_option(GUITREE_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL} GTest rapidcheck)
guitree_option(GUITREE_BUILD_BENCH "Build the benchmarks" ${PROJECT_IS_TOP_LEVEL} benchmark)
# With sanitizers, tests compile more than twice as fast without optimisation, and what they test runs faster with it.
set(GUITREE_LIBRARY_OPTIONS "" CACHE STRING "Compiler options for the libraries alone")
guitree_option(GUITREE_TEST_PACKAGE "Test the installed package with consumer projects" ON)
