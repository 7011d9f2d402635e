add_library(jet_compact STATIC
    storage/compact/compact.cpp
    storage/compact/freshdefinition.cpp
    storage/compact/indexcopy.cpp
    storage/compact/losses.cpp
    storage/compact/newcatalogue.cpp
    storage/compact/newfile.cpp
    storage/compact/objectrules.cpp
    storage/compact/rowcopy.cpp
    storage/compact/rowreader.cpp
    storage/compact/source.cpp
    storage/compact/sourcecatalogue.cpp
    storage/compact/sourcepages.cpp
    storage/compact/tablecopy.cpp
)
target_link_libraries(jet_compact PUBLIC jet_checker)
