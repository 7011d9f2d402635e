add_library(jet_index STATIC
    storage/indexkey.cpp
    storage/sortkey.cpp
    storage/sortkeytable.cpp
)
target_link_libraries(jet_index PUBLIC jet_base)
