app_test(NAME jet_functions_test
    SOURCES functions_test.cpp
    LIBRARIES jet_functions jet_lang
    LABELS jet)
