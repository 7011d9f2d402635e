add_library(jet_checker STATIC
    storage/checker.cpp
    storage/check/catalogue.cpp
    storage/check/definition.cpp
    storage/check/findings.cpp
    storage/check/header.cpp
    storage/check/index.cpp
    storage/check/longvalues.cpp
    storage/check/pagemaps.cpp
    storage/check/permissions.cpp
    storage/check/properties.cpp
    storage/check/rows.cpp
    storage/check/space.cpp
    storage/check/table.cpp
    storage/check/tree.cpp
)
target_link_libraries(jet_checker PUBLIC jet_store)
