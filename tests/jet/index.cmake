app_test(NAME jet_index_test
    SOURCES
        btree_test.cpp
        indexkey_test.cpp
        sortkey_test.cpp
        treeverifier.cpp
    LIBRARIES jet_index test_files
    LABELS jet)
