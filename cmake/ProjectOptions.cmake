# Compiler settings shared by every target through the interface target project_options.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

find_program(LLD_PROGRAM ld.lld)
if(LLD_PROGRAM AND NOT MSVC)
    add_link_options(-fuse-ld=lld) # a quarter of the usual linker's time
endif()

set(JURNAL_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

add_library(project_options INTERFACE)
target_include_directories(project_options INTERFACE ${CMAKE_SOURCE_DIR})
if(MSVC)
    target_compile_options(project_options INTERFACE /W4 /WX /utf-8)
else()
    target_compile_options(project_options INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # GCC 12 warns falsely about the standard containers when it optimises (GCC PR 105651,
        # 107852); AddressSanitizer watches over what these warnings are for.
        target_compile_options(project_options INTERFACE
            -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
    endif()
endif()
if(JURNAL_SANITIZE)
    target_compile_options(project_options INTERFACE
        -fsanitize=${JURNAL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(project_options INTERFACE -fsanitize=${JURNAL_SANITIZE})
endif()
