# Compares what a guide quotes with the files it quotes from: cmake -DGUIDE=guide.md -P CheckQuotes.cmake
#
# A quote is a code block under a comment that names the file, from the guide's folder, and a part of it or not:
#
#   <!-- quote examples/host.cpp -->             <!-- quote examples/host.cpp#smallest -->
#   ```cpp                                       ```cpp
#
# A part of a file stands between the lines "// begin smallest" and "// end smallest".
cmake_policy(VERSION 3.25)

file(READ "${GUIDE}" rest)
cmake_path(GET GUIDE PARENT_PATH folder)
set(quotes 0)

while(TRUE)
  string(FIND "${rest}" "<!-- quote " start)
  if(start EQUAL -1)
    break()
  endif()
  string(SUBSTRING "${rest}" ${start} -1 rest)
  if(NOT rest MATCHES "^<!-- quote ([^ #]+)(#([^ ]+))? -->\n\n?```[a-z]*\n")
    string(SUBSTRING "${rest}" 0 80 place)
    message(FATAL_ERROR "${GUIDE}: no code block follows: ${place}")
  endif()
  set(source "${CMAKE_MATCH_1}")
  set(part "${CMAKE_MATCH_3}")
  string(LENGTH "${CMAKE_MATCH_0}" length)
  string(SUBSTRING "${rest}" ${length} -1 rest)
  string(FIND "${rest}" "```\n" end)
  string(SUBSTRING "${rest}" 0 ${end} quoted)

  if(NOT EXISTS "${folder}/${source}")
    message(FATAL_ERROR "${GUIDE}: quotes ${source}, which does not exist")
  endif()
  file(READ "${folder}/${source}" original)
  if(part)
    string(FIND "${original}" "// begin ${part}\n" begin)
    string(FIND "${original}" "// end ${part}\n" end)
    if(begin EQUAL -1 OR end LESS begin)
      message(FATAL_ERROR "${GUIDE}: ${source} has no part ${part}")
    endif()
    string(LENGTH "// begin ${part}\n" length)
    math(EXPR begin "${begin} + ${length}")
    math(EXPR length "${end} - ${begin}")
    string(SUBSTRING "${original}" ${begin} ${length} original)
  endif()
  if(NOT quoted STREQUAL original)
    message(FATAL_ERROR "${GUIDE}: the quote of ${source} ${part} differs from the file, which reads:\n${original}")
  endif()
  math(EXPR quotes "${quotes} + 1")
endwhile()

if(quotes EQUAL 0)
  message(FATAL_ERROR "${GUIDE}: quotes nothing")
endif()
message(STATUS "${quotes} quotes are as in their files")
