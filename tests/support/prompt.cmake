add_library(test_prompt STATIC
    ${CMAKE_CURRENT_LIST_DIR}/scriptedprompt.cpp
)
target_link_libraries(test_prompt
    PUBLIC shell
    PRIVATE project_options GTest::gtest
)
