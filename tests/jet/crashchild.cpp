// Runs numbered steps on a file, from the given number on, until it is killed; writes each
// number to standard output, as four bytes, when its step is durable.
#include "jet/database.h"
#include "tests/jet/numberedsteps.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    try {
        const auto database = jet::Database::open(argv[1]);
        for (int number = std::atoi(argv[2]);; ++number) {
            jet::test::runNumberedStep(*database, number);
            if (write(STDOUT_FILENO, &number, sizeof number) != sizeof number)
                return 3;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
