add_library(jet_store STATIC
    storage/catalogue.cpp
    storage/definitionrules.cpp
    storage/describe.cpp
    storage/editfields.cpp
    storage/editindexes.cpp
    storage/edittables.cpp
    storage/imagepager.cpp
    storage/jet3/convert.cpp
    storage/jet3/copytable.cpp
    storage/newdatabase.cpp
    storage/properties.cpp
    storage/sid.cpp
    storage/store.cpp
    storage/systemtables.cpp
)
target_link_libraries(jet_store PUBLIC jet_jet3)
