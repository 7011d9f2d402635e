app_test(NAME jet_fuzzregression_test
    SOURCES fuzzregression_test.cpp
    LIBRARIES fuzz_targets
    LABELS jet)
target_compile_definitions(jet_fuzzregression_test PRIVATE
    JURNAL_FUZZ_REGRESSIONS="${CMAKE_SOURCE_DIR}/fuzz/regressions")
