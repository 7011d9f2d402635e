add_library(jet_base STATIC
    error.cpp
    tabledef.cpp
    text.cpp
    value.cpp
)
target_link_libraries(jet_base PUBLIC project_options)
