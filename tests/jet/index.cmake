app_test(NAME jet_index_test
    SOURCES
        indexkey_test.cpp
        sortkey_test.cpp
    LIBRARIES jet_index
    LABELS jet)
