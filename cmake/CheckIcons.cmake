# cmake -DGUIDE=guide.md -DHEADER=TypeIcon.h -P CheckIcons.cmake: the table of icons in the guide must have each number of
# the header, under its name, and no other.
file(READ "${GUIDE}" guide)
file(READ "${HEADER}" header)
string(REGEX MATCHALL "Icon[A-Za-z]+ = [0-9]+" declared "${header}")
string(REGEX MATCHALL "\\| [0-9]+ \\| `Icon[A-Za-z]+`" told "${guide}")
list(TRANSFORM declared REPLACE "(Icon[A-Za-z]+) = ([0-9]+)" "\\2 \\1")
list(TRANSFORM told REPLACE "\\| ([0-9]+) \\| `(Icon[A-Za-z]+)`" "\\1 \\2")
list(SORT declared)
list(SORT told)
list(LENGTH declared count)
if(count EQUAL 0 OR NOT declared STREQUAL told)
  message(FATAL_ERROR "${GUIDE} tells of\n${told}\nand the header of\n${declared}")
endif()
