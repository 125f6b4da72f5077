# Settings that every target of this project shares.

# Language level and warnings. Headers of third parties come in as system
# headers, so that only our own code is held to these warnings. They are errors here, but
# not in a build of somebody else, whose compiler and options may find others.
function(velmoran_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<BOOL:${velmoran_scene_IS_TOP_LEVEL}>:-Werror>
        # Clang, which builds the fuzzers, takes both further: to signs, and to enumerators
        # of a class that are named as a variable outside.
        "$<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion;-Wno-shadow>")
endfunction()

# A shared library lib<name>, target velmoran::<short>, from the sources given.
function(velmoran_add_library name short)
    add_library(${name} SHARED ${ARGN})
    add_library(velmoran::${short} ALIAS ${name})
    velmoran_target_defaults(${name})
    # Nobody replaces our functions at load time: calls inside a library need no detour
    # and may be inlined, though the functions are exported.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    # Nothing but our own classes can be seen from outside.
    set(symbols ${PROJECT_SOURCE_DIR}/cmake/exported_symbols.map)
    target_link_options(${name} PRIVATE LINKER:--version-script=${symbols})
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${symbols})
    string(TOUPPER ${short} upper)
    target_compile_definitions(${name} PRIVATE VELMORAN_${upper}_BUILDING)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/velmoran>)
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${short}
        INSTALL_RPATH $ORIGIN # one library finds the other, wherever they are
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
