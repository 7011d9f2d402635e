# Commands of the service and help menus: other programs, letters, calendar, log.
find_package(SQLite3 REQUIRED)
target_sources(shell PRIVATE
    service/helppage.cpp
    service/letter.cpp
    service/logfile.cpp
    service/outsideprograms.cpp
    service/privatefolder.cpp
    service/programdetails.cpp
    service/studycalendar.cpp
)
target_link_libraries(shell PRIVATE SQLite::SQLite3)
