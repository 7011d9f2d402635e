app_test(NAME jet_checker_test
    SOURCES
        checker_test.cpp
    LIBRARIES jet_checker test_files test_support
    LABELS jet
)
