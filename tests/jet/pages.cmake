app_test(NAME jet_pages_test
    SOURCES
        value_test.cpp
        header_test.cpp
        systemfiles_test.cpp
        pagecache_test.cpp
        pager_test.cpp
        journal_test.cpp
        usagemap_test.cpp
    LIBRARIES jet_pages test_files test_support
    LABELS jet
)
