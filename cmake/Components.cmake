# One target per product folder, and edges that the compiler enforces.
#
# Nothing puts the repository root on a product target's include path. Instead each target gets
# a directory in the build tree, build/headers/<target>/, that holds symbolic links to its own
# folder (and, where the map allows it, to single headers of another folder). The headers of the
# folders below it arrive through target_link_libraries, so a target sees exactly its own folder
# and those it links, and a wrong-direction include such as `#include "effect/orlune.h"` in
# popelim/ ends in "No such file or directory". The README's map lists who may see whom.

# Gives `target` the headers named by `items` (folders or single files, relative to the source
# root), under their usual spelling "folder/File.h", for itself and for the targets that link it.
function(orlune_headers target)
    set(dir ${CMAKE_BINARY_DIR}/headers/${target})
    file(REMOVE_RECURSE ${dir})
    file(MAKE_DIRECTORY ${dir})
    foreach(item IN LISTS ARGN)
        cmake_path(GET item PARENT_PATH parent)
        if(parent)
            file(MAKE_DIRECTORY ${dir}/${parent})
        endif()
        file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${item} ${dir}/${item} SYMBOLIC)
    endforeach()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_include_directories(${target} INTERFACE ${dir})
    else()
        target_include_directories(${target} PUBLIC ${dir})
    endif()
endfunction()

# A static library of every .cpp in the calling folder, with the product's visibility flags.
function(orlune_component target)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/Exports\\.cpp$")
    add_library(${target} STATIC ${sources})
    target_compile_options(${target} PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
endfunction()
