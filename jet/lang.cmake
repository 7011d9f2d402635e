add_library(jet_lang STATIC
    sql/columntypes.cpp
    sql/dateliteral.cpp
    sql/functionnames.cpp
    sql/lexer.cpp
    sql/parsechange.cpp
    sql/parsedefinition.cpp
    sql/parseexpression.cpp
    sql/parsequery.cpp
    sql/parser.cpp
    sql/tokencursor.cpp
    sqltext.cpp
)
target_link_libraries(jet_lang PUBLIC jet_base)
