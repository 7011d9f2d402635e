#pragma once

#include "demo/random.h"

#include <string>

namespace demo {

struct PersonName
{
    std::string family;
    std::string given;
    std::string patronymic; // empty for some
    bool male = true;

    // "Иванова М.П."
    std::string withInitials() const;
};

// A Russian name in the forms of its sex; about one in sixty has no patronymic.
PersonName randomName(Random& random);

} // namespace demo
