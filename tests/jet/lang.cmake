app_test(NAME jet_lang_test
    SOURCES
        ddl_test.cpp
        evaluation_test.cpp
        journalconnection.cpp
        queries_test.cpp
        robustness_test.cpp
        sqltext_test.cpp
        translation_test.cpp
    LIBRARIES jet_functions jet_lang
    LABELS jet
)
target_compile_definitions(jet_lang_test PRIVATE JET_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}")
