app_test(NAME jet_functions_test
    SOURCES functions_test.cpp
    LIBRARIES jet_functions jet_lang
    LABELS jet)
app_test(NAME jet_query_test
    SOURCES
        change_test.cpp
        defaults_test.cpp
        query_test.cpp
        queryfixture.cpp
        rowlist_test.cpp
        textorder_test.cpp
        virtualtable_test.cpp
    LIBRARIES jet test_files
    LABELS jet)
app_test(NAME jet_samples_test
    SOURCES samples_test.cpp
    LIBRARIES jet test_support
    LABELS jet)
