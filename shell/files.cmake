# What happens to whole journal files: copies, archive, locks. Qt Core and libzip.
# Debian's package file for CMake asks for libzip's tools as well, hence the plain search.
find_library(LIBZIP_LIBRARY zip REQUIRED)
find_path(LIBZIP_INCLUDE zip.h REQUIRED)
target_sources(shell PRIVATE
    files/archive.cpp
    files/archivename.cpp
    files/autocopies.cpp
    files/copyfile.cpp
    files/copypreview.cpp
    files/drives.cpp
    files/filestamp.cpp
    files/filetexts.cpp
    files/filewatch.cpp
    files/filewatch.h
    files/journalcare.cpp
    files/journalcare.h
    files/locknote.cpp
    files/retention.cpp
    files/snapshot.cpp
    files/uncleanend.cpp
    files/zipfile.cpp
)
target_include_directories(shell SYSTEM PRIVATE ${LIBZIP_INCLUDE})
target_link_libraries(shell PRIVATE ${LIBZIP_LIBRARY} jet_compact)
