# One static library per layer. A library's headers are reachable only through an
# include root of its own, made of links to exactly those headers; so a file can
# include a header only when its library links the library that owns it, and a
# wrong include fails to build instead of tying the layers together quietly.

# Precompiled headers shared by all layers of one kind: Qt Core for the model,
# Qt Widgets for the layers that build panels and windows.
function(zds_add_pch_targets)
  file(WRITE ${CMAKE_BINARY_DIR}/zds_pch.cpp "")
  add_library(zds_pch_core STATIC ${CMAKE_BINARY_DIR}/zds_pch.cpp)
  target_link_libraries(zds_pch_core PUBLIC Qt5::Core)
  target_precompile_headers(zds_pch_core PRIVATE <QtCore>)
  add_library(zds_pch_widgets STATIC ${CMAKE_BINARY_DIR}/zds_pch.cpp)
  target_link_libraries(zds_pch_widgets PUBLIC Qt5::Core Qt5::Gui Qt5::Widgets)
  target_precompile_headers(zds_pch_widgets PRIVATE <QtCore> <QtGui> <QtWidgets>)
endfunction()

# The include root of a library: links to its headers, by their paths in the tree.
function(zds_link_headers root)
  file(REMOVE_RECURSE ${root})
  file(MAKE_DIRECTORY ${root})
  foreach(source ${ARGN})
    if(source MATCHES "\\.h$")
      file(RELATIVE_PATH relative ${CMAKE_SOURCE_DIR} ${source})
      get_filename_component(folder ${root}/${relative} DIRECTORY)
      file(MAKE_DIRECTORY ${folder})
      file(CREATE_LINK ${source} ${root}/${relative} SYMBOLIC)
    endif()
  endforeach()
endfunction()

# zds_library(NAME PCH core|widgets SOURCES files... LINKS targets...)
function(zds_library name)
  cmake_parse_arguments(ARG "" "PCH" "SOURCES;LINKS" ${ARGN})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  list(FILTER ARG_SOURCES EXCLUDE REGEX "^$")
  set(compiled ${ARG_SOURCES})
  list(FILTER compiled INCLUDE REGEX "\\.cpp$")
  if(NOT compiled)
    # A layer that has only headers so far.
    add_library(${name} INTERFACE ${ARG_SOURCES})
    target_include_directories(${name} INTERFACE ${root})
    target_link_libraries(${name} INTERFACE ${ARG_LINKS})
    zds_link_headers(${root} ${ARG_SOURCES})
    return()
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  zds_link_headers(${root} ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS})
  target_precompile_headers(${name} REUSE_FROM zds_pch_${ARG_PCH})
endfunction()

# The files of a folder (not of its sub-folders) that a library is made of.
function(zds_folder_files out folder)
  file(GLOB files CONFIGURE_DEPENDS
       ${CMAKE_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/${folder}/*.h
       ${CMAKE_SOURCE_DIR}/${folder}/*.ui ${CMAKE_SOURCE_DIR}/${folder}/*.qrc)
  set(${out} ${files} PARENT_SCOPE)
endfunction()
