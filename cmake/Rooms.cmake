# Rooms: the folders of sources, the libraries that they build into, and what each may include.
# script/check-rooms holds the sources to it; the table is written beside the build's other files.

# zib_uses(FOLDER [USED...]): what is in FOLDER, and in those of its folders that are no rooms, may include
# what is in itself and in the USED folders and below. Folders named Private are part of the room that they
# are in, and seen by another only if it names them.
function(zib_uses folder)
  list(JOIN ARGN " " used)
  set_property(GLOBAL APPEND PROPERTY ZIB_ROOMS "${folder}: ${used}")
endfunction()

# zib_room(LIBRARY FOLDER [USED...]): makes the sources in FOLDER a part of LIBRARY, which need not be there
# yet.
function(zib_room library folder)
  if(NOT TARGET ${library})
    add_library(${library} STATIC)
    target_link_libraries(${library} PRIVATE $<BUILD_INTERFACE:zib_warnings>)
    if(folder MATCHES "^Sources/")
      target_include_directories(${library} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/Sources> $<INSTALL_INTERFACE:${ZIB_INSTALL_HEADERS}>)
    else()
      target_include_directories(${library} PUBLIC ${PROJECT_SOURCE_DIR})
    endif()
  endif()
  set(path ${PROJECT_SOURCE_DIR}/${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${path}/*.cpp ${path}/Private/*.cpp)
  target_sources(${library} PRIVATE ${sources})
  zib_uses(${folder} ${ARGN})
endfunction()

function(zib_write_rooms)
  get_property(rooms GLOBAL PROPERTY ZIB_ROOMS)
  list(JOIN rooms "\n" text)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/rooms.txt CONTENT "${text}\n" @ONLY)
endfunction()
