cmake_minimum_required(VERSION 3.25)
# Refuses an include that reaches a layer above the one including it.
#   cmake -DROOT=<src> -DLAYER=<folder> -DALLOWED=<folder,folder...> [-DSTAMP=<file>] -P Layer_Check.cmake
# Every file under ROOT/LAYER is read; an include "<folder>/..." whose folder
# is a folder of ROOT and not in ALLOWED (the layer itself and the ones
# below it) fails the check with the file, the line and what it may include.
string(REPLACE "," ";" ALLOWED "${ALLOWED}")
file(GLOB layers LIST_DIRECTORIES true RELATIVE ${ROOT} ${ROOT}/*)
file(GLOB_RECURSE sources ${ROOT}/${LAYER}/*.h ${ROOT}/${LAYER}/*.cpp)
list(SORT sources)
set(refused "")
foreach(source ${sources})
  file(STRINGS ${source} includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"[A-Za-z_]+/")
  foreach(line ${includes})
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([A-Za-z_]+)/.*$" "\\1" folder "${line}")
    if(folder IN_LIST layers AND IS_DIRECTORY ${ROOT}/${folder} AND NOT folder IN_LIST ALLOWED)
      file(RELATIVE_PATH shown ${ROOT} ${source})
      string(STRIP "${line}" line)
      string(APPEND refused "  ${shown}: ${line}\n")
    endif()
  endforeach()
endforeach()
if(refused)
  string(REPLACE ";" ", " allowed "${ALLOWED}")
  message(FATAL_ERROR "upward include: ${LAYER} may include only ${allowed}\n${refused}")
endif()
if(STAMP)
  file(TOUCH ${STAMP})
endif()
