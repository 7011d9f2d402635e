add_library(jet_rows STATIC
    storage/datapage.cpp
    storage/decimaltext.cpp
    storage/definition.cpp
    storage/definitioncodec.cpp
    storage/definitionpages.cpp
    storage/equalityindex.cpp
    storage/indexkeeper.cpp
    storage/longvalue.cpp
    storage/rowcodec.cpp
    storage/rowdraft.cpp
    storage/rowspace.cpp
    storage/rowview.cpp
    storage/table.cpp
    storage/tablechange.cpp
    storage/tableindexes.cpp
    storage/tablescan.cpp
    storage/textcodec.cpp
    storage/valuecodec.cpp
    storage/valueconversion.cpp
)
target_link_libraries(jet_rows PUBLIC jet_index)
