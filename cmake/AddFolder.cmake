# One folder of src/ is one static library, in shell/ each of its folders. The path below src/ names it; the target is
# the path with "_" for "/". Its include root holds a link to the folder alone, and a folder gets its own root and those
# of MAY_INCLUDE, no others: the lists are linked privately, so what a listed folder itself includes is not inherited.
function(add_folder path) # MAY_INCLUDE folder... LINKS library... PUBLIC_LINKS library... SOURCES file...
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "MAY_INCLUDE;LINKS;PUBLIC_LINKS;SOURCES")
    string(REPLACE / _ name ${path})
    string(REPLACE / _ may_include "${arg_MAY_INCLUDE}")
    set(root ${PROJECT_BINARY_DIR}/include_roots/${name})
    cmake_path(GET path PARENT_PATH parent)
    file(MAKE_DIRECTORY ${root}/${parent})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${path} SYMBOLIC)
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC Qt6::Core ${arg_PUBLIC_LINKS} PRIVATE ${may_include} ${arg_LINKS})
    target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
    target_precompile_headers(${name} PRIVATE <QString> <map> <memory> <string> <vector>)
    set_property(GLOBAL APPEND PROPERTY VISTORAMA_INCLUDE_ROOTS ${root})
endfunction()

# What tests, benches and fuzzers stand on: they look into every folder, whatever they link.
function(include_all_folders)
    get_property(roots GLOBAL PROPERTY VISTORAMA_INCLUDE_ROOTS)
    include_directories(${roots})
endfunction()

# The tests of one folder: one program per folder of tests/, each test case known to ctest by itself.
function(add_folder_test name) # FOLDERS folder... LINKS library... LABELS label... SOURCES file...
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FOLDERS;LINKS;LABELS;SOURCES")
    string(REPLACE / _ folders "${arg_FOLDERS}")
    add_executable(${name}_tests ${arg_SOURCES})
    target_link_libraries(${name}_tests PRIVATE ${folders} ${arg_LINKS} support GTest::gmock)
    target_precompile_headers(${name}_tests PRIVATE <gtest/gtest.h> <QString> ${PROJECT_SOURCE_DIR}/tests/support/QtPrinters.h)
    gtest_discover_tests(${name}_tests
        TEST_PREFIX ${name}.
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 LABELS "${arg_LABELS}"
    )
endfunction()
