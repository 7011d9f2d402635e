app_test(NAME jet_rows_test
    SOURCES
        damage_test.cpp
        definition_test.cpp
        lookup_test.cpp
        samplerows_test.cpp
        table_test.cpp
        tablerules_test.cpp
        textcodec_test.cpp
        valueconversion_test.cpp
    LIBRARIES jet_store test_files test_support
    LABELS jet
)
