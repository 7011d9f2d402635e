app_test(NAME jet_rows_test
    SOURCES
        definition_test.cpp
        samplerows_test.cpp
    LIBRARIES jet_rows test_files test_support
    LABELS jet
)
