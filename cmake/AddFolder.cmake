# One folder of src/ is one static library. Its include root holds a link to the folder alone, so that
# "folder/Header.h" is found only by the folders that name it in MAY_INCLUDE.
function(add_folder name) # MAY_INCLUDE folder... LINKS library... PUBLIC_LINKS library... SOURCES file...
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "MAY_INCLUDE;LINKS;PUBLIC_LINKS;SOURCES")
    set(root ${PROJECT_BINARY_DIR}/include_roots/${name})
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${name} SYMBOLIC)
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC Qt6::Core ${arg_MAY_INCLUDE} ${arg_PUBLIC_LINKS} PRIVATE ${arg_LINKS})
    target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
    target_precompile_headers(${name} PRIVATE <QString> <map> <memory> <string> <vector>)
endfunction()

# The tests of one folder: one program per folder of tests/, each test case known to ctest by itself.
function(add_folder_test name) # FOLDERS folder... LINKS library... LABELS label... SOURCES file...
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FOLDERS;LINKS;LABELS;SOURCES")
    add_executable(${name}_tests ${arg_SOURCES})
    target_link_libraries(${name}_tests PRIVATE ${arg_FOLDERS} ${arg_LINKS} support GTest::gmock)
    target_precompile_headers(${name}_tests PRIVATE <gtest/gtest.h> <QString> ${PROJECT_SOURCE_DIR}/tests/support/QtPrinters.h)
    gtest_discover_tests(${name}_tests
        TEST_PREFIX ${name}.
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 LABELS "${arg_LABELS}"
    )
endfunction()
