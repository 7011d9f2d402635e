add_library(jet_base STATIC
    error.cpp
    tabledef.cpp
    text.cpp
    value.cpp
)
# Warnings and sanitizers are for building here, not for those who use the installed library.
target_link_libraries(jet_base PUBLIC $<BUILD_INTERFACE:project_options>)
target_compile_features(jet_base PUBLIC cxx_std_20)
target_include_directories(jet_base PUBLIC $<INSTALL_INTERFACE:include>)
