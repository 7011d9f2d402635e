add_library(jet_lang STATIC
    sql/dateliteral.cpp
    sql/functionnames.cpp
    sql/lexer.cpp
    sqltext.cpp
)
target_link_libraries(jet_lang PUBLIC jet_base)
