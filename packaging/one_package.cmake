# What differs between packages; CPack reads this for each. An archive unpacks into a folder of its own.
if(CPACK_GENERATOR STREQUAL TGZ)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
