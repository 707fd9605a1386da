# Compiler cache, linker, warnings and sanitizers: one place for all targets.

find_program(CCACHE ccache)
if(CCACHE)
    # Precompiled headers are cached only with these two set aside; without the folder in the key, a second checkout
    # of the project finds what the first one has compiled.
    set(launcher ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_NOHASHDIR=1
        CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} ${CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Werror)
# Only clang knows which mutex guards which field.
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wthread-safety>)

# What Debian asks of programs: all symbols bound at the start and read-only from then on, checked copies in libc.
add_link_options(-Wl,-z,relro,-z,now)
add_compile_definitions($<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)

set(VISTORAMA_FUZZ FALSE CACHE BOOL "Build the fuzz targets as fuzzers; needs clang")
if(VISTORAMA_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

set(VISTORAMA_SANITIZE "" CACHE STRING "Sanitizers for all targets, as -fsanitize= takes them")
if(VISTORAMA_SANITIZE)
    add_compile_options(-fsanitize=${VISTORAMA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VISTORAMA_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # g++ 12 takes copies of short strings for overruns once they are instrumented.
        add_compile_options(-Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread
            -Wno-maybe-uninitialized)
    endif()
endif()
