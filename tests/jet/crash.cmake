app_test(NAME jet_crash_test
    SOURCES
        crash_test.cpp
        crashrecovery_test.cpp
        crashworkload.cpp
    LIBRARIES jet jet_checker test_files test_support
    LABELS jet
)
if(UNIX)
    add_executable(jet_crash_child crashchild.cpp numberedsteps.cpp)
    target_link_libraries(jet_crash_child PRIVATE project_options jet)
    target_sources(jet_crash_test PRIVATE
        crashkill_test.cpp
        crashmedia_test.cpp
        numberedsteps.cpp
    )
    target_compile_definitions(jet_crash_test PRIVATE
        JET_CRASH_CHILD="$<TARGET_FILE:jet_crash_child>")
    add_dependencies(jet_crash_test jet_crash_child)
endif()
