# Precompiled headers. A family is one header, compiled once and shared by every target that names it; what a family
# holds is never needed to compile a file, because PINTLE_PRECOMPILE=OFF builds without them (the preset release does).
# Not on macOS, where nobody has tried it: half of the backend's files there are in another language, which would need
# families of its own.
if(APPLE)
    set(default OFF)
else()
    set(default ON)
endif()
option(PINTLE_PRECOMPILE "Precompile the headers that most files use" ${default})

# A compiler cache takes precompiled headers only where it may trust their times and where the compiler says which
# header it read.
if(PINTLE_PRECOMPILE AND PINTLE_CCACHE)
    set(launcher ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${PINTLE_CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
    elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
    endif()
endif()

# Programs as libraries are compiled, because a precompiled header serves one kind of position-independent code only.
if(PINTLE_PRECOMPILE)
    set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
endif()

# The libraries behind a family. Of most only the folders are taken, because a compiler refuses a header that was
# compiled under a definition which the file at hand lacks; the definitions of these all users have.
set(PINTLE_FAMILY_core fmt::fmt)
set(PINTLE_FAMILY_toolkit Qt6::Core Qt6::Gui Qt6::DBus)
set(PINTLE_FAMILY_quick ${PINTLE_FAMILY_toolkit} Qt6::Qml Qt6::Quick)
set(PINTLE_FAMILY_tests fmt::fmt GTest::gtest GTest::gmock)
set(PINTLE_DEFINING_LIBRARIES fmt::fmt Qt6::Core GTest::gtest GTest::gmock)

# pintle_precompile(target family): the target's files begin with the family's header.
function(pintle_precompile target family)
    if(NOT PINTLE_PRECOMPILE)
        return()
    endif()
    set(maker pintle_precompiled_${family})
    if(NOT TARGET ${maker})
        if(family MATCHES "toolkit|quick")
            find_package(Qt6 REQUIRED COMPONENTS Core Gui DBus)
        endif()
        if(family STREQUAL "quick")
            find_package(Qt6 REQUIRED COMPONENTS Qml Quick)
        endif()
        add_library(${maker} OBJECT ${PROJECT_SOURCE_DIR}/cmake/precompiled/empty.cpp)
        target_include_directories(${maker} PRIVATE ${PROJECT_SOURCE_DIR})
        foreach(library IN LISTS PINTLE_FAMILY_${family})
            if(library IN_LIST PINTLE_DEFINING_LIBRARIES)
                target_link_libraries(${maker} PRIVATE ${library})
            else()
                target_include_directories(${maker} SYSTEM PRIVATE
                    $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
            endif()
        endforeach()
        if(family STREQUAL "tests")
            # As its users are compiled; see pintle_test.
            target_compile_options(${maker} PRIVATE -O0)
        endif()
        target_precompile_headers(${maker} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled/${family}.h)
    endif()
    target_precompile_headers(${target} REUSE_FROM ${maker})
endfunction()
