add_library(jet_pages STATIC
    storage/filekind.cpp
    storage/header.cpp
    storage/journal.cpp
    storage/journalstate.cpp
    storage/maprow.cpp
    storage/pageallocator.cpp
    storage/pagecache.cpp
    storage/pager.cpp
    storage/rc4.cpp
    storage/recovery.cpp
    storage/usagemap.cpp
)
if(WIN32)
    target_sources(jet_pages PRIVATE storage/windowsfiles.cpp)
else()
    target_sources(jet_pages PRIVATE storage/posixfiles.cpp)
endif()
target_link_libraries(jet_pages PUBLIC jet_base)
