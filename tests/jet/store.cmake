app_test(NAME jet_store_test
    SOURCES
        newdatabase_test.cpp
        catalogue_test.cpp
        properties_test.cpp
        schemachange_test.cpp
        schemasamples_test.cpp
        transaction_test.cpp
    LIBRARIES jet_store test_files test_support
    LABELS jet
)
