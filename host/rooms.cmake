# Rooms: one library for each folder of the host, in layers that the compiler checks.
#
# A room sees the headers of the rooms that it uses, of those that these use, and no others: each room's headers are
# reached through a folder of their own, in which they have their whole path ("host/text/glob.h").

# Gives a target the folder of a room's headers.
function(add_headers target room)
    set(headers ${PROJECT_BINARY_DIR}/rooms/${room})
    file(MAKE_DIRECTORY ${headers}/host)
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${headers}/host/${room} SYMBOLIC)
    target_include_directories(${target} PUBLIC ${headers})
endfunction()

# add_room(NAME USES room... [LIBRARIES target...] SOURCES file...): the room of the current folder, as `host_NAME`.
#
# Objects, not an archive: the component and its collaborators call one another, so no order of archives would do.
function(add_room name)
    cmake_parse_arguments(ROOM "" "" "USES;LIBRARIES;SOURCES" ${ARGN})
    add_library(host_${name} OBJECT ${ROOM_SOURCES})
    add_headers(host_${name} ${name})
    list(TRANSFORM ROOM_USES PREPEND host_)
    target_link_libraries(host_${name} PUBLIC ${ROOM_USES} ${ROOM_LIBRARIES} PRIVATE strict_warnings)
    target_sources(wiki_scope_host INTERFACE $<TARGET_OBJECTS:host_${name}>)
    target_link_libraries(wiki_scope_host INTERFACE host_${name})
endfunction()
