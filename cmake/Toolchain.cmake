# Compiler cache, linker, warnings and sanitizers: one place for all targets.

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Werror)

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
