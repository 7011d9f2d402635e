app_test(NAME jet_jet3_test
    SOURCES
        jet3_test.cpp
        otherfiles_test.cpp
        unknowncolumns_test.cpp
    LIBRARIES jet test_files test_support
    LABELS jet)
