# app_test(NAME name SOURCES a.cpp ... LIBRARIES lib ... [LABELS label ...] [QT])
# A GoogleTest program. QT tests bring their own main (tests/support/qtmain.cpp), which
# makes an application object and runs offscreen.
include(GoogleTest)
find_package(GTest REQUIRED)

function(app_test)
    cmake_parse_arguments(ARG "QT" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE project_options ${ARG_LIBRARIES} GTest::gtest)
    if(ARG_QT)
        target_sources(${ARG_NAME} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support/qtmain.cpp)
        target_link_libraries(${ARG_NAME} PRIVATE Qt6::Widgets Qt6::Test)
    else()
        target_link_libraries(${ARG_NAME} PRIVATE GTest::gtest_main)
    endif()
    # One ctest entry a program: its cases share costly fixtures, and ctest starts few processes.
    add_test(NAME ${ARG_NAME} COMMAND ${ARG_NAME})
    set_tests_properties(${ARG_NAME} PROPERTIES
        LABELS "${ARG_LABELS}"
        TIMEOUT 600
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;JURNAL_SHARED=${CMAKE_SOURCE_DIR}/../shared")
endfunction()
