// Makes an address book in a new .mdb file, adds to it and reads it back in order.
//   addresses FILE
#include <jet/database.h>
#include <jet/error.h>
#include <jet/sqltext.h>

#include <iostream>

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::cerr << "addresses FILE\n";
        return 2;
    }
    auto book = jet::Database::create(argv[1]);
    book->execute("CREATE TABLE People (ID COUNTER CONSTRAINT pk PRIMARY KEY, "
                  "Surname TEXT(50), Town TEXT(50));");

    jet::Transaction together(*book); // durable as one step, or not at all
    book->insert("People", {{{"Surname", "Ёлкина"}, {"Town", "Омск"}}});
    book->insert("People", {{{"Surname", "Жуков"}, {"Town", "Псков"}}});
    book->execute("INSERT INTO People (Surname, Town) VALUES (" + jet::sql::text("О\"Нил")
                  + ", \"Тула\");");
    together.commit();

    auto rows = book->query("SELECT ID, Surname, Town FROM People ORDER BY Surname;");
    while (rows.next())
        std::cout << rows.integer("ID") << ' ' << rows.text("Surname") << ", " << rows.text("Town")
                  << '\n';
    return 0;
} catch (const jet::Error& error) {
    std::cerr << "Ошибка: " << error.what() << '\n';
    return 1;
}
