find_package(SQLite3 REQUIRED)

# The functions and the collation that translated texts use: no tables, no files.
add_library(jet_functions STATIC
    sql/aggregates.cpp
    sql/calendar.cpp
    sql/collation.cpp
    sql/conversion.cpp
    sql/conversionfunctions.cpp
    sql/datefunctions.cpp
    sql/dateparsing.cpp
    sql/formatdate.cpp
    sql/formatnumber.cpp
    sql/functioncall.cpp
    sql/functions.cpp
    sql/likepattern.cpp
    sql/numberfunctions.cpp
    sql/sqliteerror.cpp
    sql/textfunctions.cpp
)
target_link_libraries(jet_functions PUBLIC jet_index SQLite::SQLite3)

add_library(jet STATIC
    appender.cpp
    database.cpp
    recordset.cpp
    sql/columnstatistics.cpp
    sql/columnvalue.cpp
    sql/engine.cpp
    sql/outerjoins.cpp
    sql/resultvalue.cpp
    sql/rowfilter.cpp
    sql/rowlist.cpp
    sql/statementcache.cpp
    sql/storeschema.cpp
    sql/tablecursor.cpp
    sql/tableplan.cpp
    sql/virtualtable.cpp
)
target_link_libraries(jet PUBLIC jet_store jet_lang jet_functions)
