# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
#
# The layers of the source tree, lowest first. A file may include headers of its own area and
# of the areas below it, never of one above; a file outside a gui/ folder (the core, which
# links Qt Core only) never includes a header from a gui/ folder; and a core file (outside gui/
# and paint/ folders) never includes a header from a paint/ folder, whose pictures need Qt Gui.
#
#   cmake -DSOURCE_DIR=<repository>/src -P check-layers.cmake

set(layers runtime session plotting methods times import analysis help mainwindow app)

if(NOT SOURCE_DIR)
  message(FATAL_ERROR "SOURCE_DIR is not set")
endif()

file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.cpp)
set(failures "")
foreach(file IN LISTS files)
  string(REGEX MATCH "^[^/]+" area "${file}")
  list(FIND layers "${area}" own)
  if(own LESS 0)
    string(APPEND failures "${file}: the folder ${area} is not a known layer\n")
    continue()
  endif()
  string(FIND "${file}" "/gui/" guiPos)
  string(FIND "${file}" "/paint/" paintPos)
  file(STRINGS ${SOURCE_DIR}/${file} includes REGEX "^#include \"")
  foreach(line IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" header "${line}")
    string(REGEX MATCH "^[^/]+" target "${header}")
    list(FIND layers "${target}" theirs)
    if(theirs LESS 0)
      continue() # generated files (moc) and headers beside the file
    endif()
    if(theirs GREATER own)
      string(APPEND failures "${file}: includes ${header}, a layer above ${area}\n")
    endif()
    string(FIND "${header}" "/gui/" headerGui)
    if(guiPos LESS 0 AND headerGui GREATER_EQUAL 0)
      string(APPEND failures "${file}: core code includes the window header ${header}\n")
    endif()
    string(FIND "${header}" "/paint/" headerPaint)
    if(guiPos LESS 0 AND paintPos LESS 0 AND headerPaint GREATER_EQUAL 0)
      string(APPEND failures "${file}: core code includes the painting header ${header}\n")
    endif()
  endforeach()
endforeach()

if(failures)
  message(FATAL_ERROR "Layering broken:\n${failures}")
endif()
list(LENGTH files count)
message(STATUS "${count} files keep the layers")
