# A journal file made for one test.
add_library(test_smalljournal STATIC
    ${CMAKE_CURRENT_LIST_DIR}/smalljournal.cpp
)
target_link_libraries(test_smalljournal
    PUBLIC data
    PRIVATE project_options
)
