# Runs guitree-show once and compares output, messages and exit code.
# With GUITREE_UPDATE_EXPECTED in the environment what came becomes what is expected.
cmake_policy(VERSION 3.25)

# Open CASCADE is built without frame pointers: only the slow way to walk the stack, here a short one, reaches the names that
# tests/leaks.supp lists.
set(ENV{ASAN_OPTIONS} "$ENV{ASAN_OPTIONS}:fast_unwind_on_malloc=0:malloc_context_size=10")

string(REPLACE "|" ";" ARGS "${ARGS}")
if(NOT INPUT)
  set(INPUT /dev/null)
endif()
execute_process(
  COMMAND "${SHOW}" ${ARGS}
  INPUT_FILE "${INPUT}"
  WORKING_DIRECTORY "${WORK}"
  OUTPUT_VARIABLE out
  ERROR_VARIABLE err
  RESULT_VARIABLE exit)

foreach(stream out err)
  set(expected "")
  if(DEFINED ENV{GUITREE_UPDATE_EXPECTED})
    if(${stream} STREQUAL "")
      file(REMOVE "${EXPECTED}.${stream}")
    else()
      file(WRITE "${EXPECTED}.${stream}" "${${stream}}")
    endif()
  endif()
  if(EXISTS "${EXPECTED}.${stream}")
    file(READ "${EXPECTED}.${stream}" expected)
  endif()
  if(NOT "${${stream}}" STREQUAL "${expected}")
    message(SEND_ERROR "std${stream} is:\n${${stream}}\nand should be (${EXPECTED}.${stream}):\n${expected}")
  endif()
endforeach()
if(NOT exit STREQUAL EXIT)
  message(SEND_ERROR "the exit code is ${exit} and should be ${EXIT}; messages:\n${err}")
endif()
