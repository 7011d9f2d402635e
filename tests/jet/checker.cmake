app_test(NAME jet_checker_test
    SOURCES
        cataloguedamage_test.cpp
        checkedfile.cpp
        checker_test.cpp
        damageplaces.cpp
        definitiondamage_test.cpp
        expectfound.cpp
        indexdamage_test.cpp
        mutation_test.cpp
        pagedamage_test.cpp
        rowdamage_test.cpp
    LIBRARIES jet_checker test_files test_support
    LABELS jet
)
app_test(NAME jet_textindex_test
    SOURCES
        textindex_test.cpp
        treeverifier.cpp
    LIBRARIES jet_checker test_files test_support
    LABELS jet
)
