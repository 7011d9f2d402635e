add_library(jet_index STATIC
    storage/btree.cpp
    storage/btreebuild.cpp
    storage/indexkey.cpp
    storage/indexpage.cpp
    storage/sortkey.cpp
    storage/sortkeytable.cpp
    storage/treechange.cpp
    storage/treepages.cpp
)
target_link_libraries(jet_index PUBLIC jet_pages)
