# What the tests of the engine share; needs no Qt.
add_library(test_files STATIC
    ${CMAKE_CURRENT_LIST_DIR}/jet3file.cpp
    ${CMAKE_CURRENT_LIST_DIR}/memoryfiles.cpp
)
target_link_libraries(test_files PUBLIC jet_pages)

add_library(test_support STATIC
    ${CMAKE_CURRENT_LIST_DIR}/outsidecheckers.cpp
)
target_link_libraries(test_support PUBLIC project_options)
