app_test(NAME jet_compact_test
    SOURCES
        compact_test.cpp
        repair_test.cpp
        tablecontent.cpp
    LIBRARIES jet_compact jet test_files test_support
    LABELS jet
)
