add_library(jet_lang STATIC
    sql/columntypes.cpp
    sql/dateliteral.cpp
    sql/defaultvalue.cpp
    sql/fragment.cpp
    sql/functionnames.cpp
    sql/lexer.cpp
    sql/parsechange.cpp
    sql/parsedefinition.cpp
    sql/parseexpression.cpp
    sql/parsequery.cpp
    sql/parser.cpp
    sql/scope.cpp
    sql/selecttranslator.cpp
    sql/tokencursor.cpp
    sql/translatecall.cpp
    sql/translatechange.cpp
    sql/translateexpression.cpp
    sql/translateoperation.cpp
    sql/translatequery.cpp
    sql/translatesource.cpp
    sql/translation.cpp
    sql/types.cpp
    sqltext.cpp
)
target_link_libraries(jet_lang PUBLIC jet_base)
