# Who may do what: users, roles, passwords. Qt Network brings the key derivation.
find_package(Qt6 REQUIRED COMPONENTS Network)
target_sources(shell PRIVATE
    access/programpassword.cpp
    access/rights.cpp
    access/users.cpp
)
target_link_libraries(shell PRIVATE Qt6::Network)
