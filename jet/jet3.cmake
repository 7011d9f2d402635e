add_library(jet_jet3 STATIC
    storage/jet3/codepage.cpp
    storage/jet3/codepagetables.cpp
    storage/jet3/definition.cpp
    storage/jet3/pages.cpp
    storage/jet3/privatefiles.cpp
    storage/jet3/rows.cpp
)
target_link_libraries(jet_jet3 PUBLIC jet_rows)
