#include "refbooks/toolbar.h"

#include "shell/wording.h"

#include <QString>

#include <gtest/gtest.h>

using namespace refbooks;
using shell::Role;

namespace {

std::string keys(Book book)
{
    std::string line;
    for (const ToolbarButton& button : toolbarButtons(book, shell::Wording()))
        line += (line.empty() ? "" : " ") + std::string(button.key);
    return line;
}

TEST(ListToolbar, HasTheButtonsOfItsBook)
{
    EXPECT_EQ(keys(Book::Workload), "keyAdd keyEdit keyCopy keyCopyTo keySep2 keyDel keyAllDay "
                                    "keySep3 keyNagrLock keyAnl keyJur keyImp");
    EXPECT_EQ(keys(Book::Groups), "keyAdd keyEdit keyCopy keyDel keyImp");
    EXPECT_EQ(keys(Book::Users), "keyAdd keyEdit keyCopy keyDel");
    EXPECT_EQ(keys(Book::Students), "keyAdd keyEdit keyCopy keyDel keySep5 keyImp");
}

TEST(ListToolbar, OffersWhatTheRoleMayDo)
{
    struct Case
    {
        std::string_view key;
        Book book;
        Role role;
        int selected;
        bool enabled;
    };
    const Case cases[] = {
        {"keyAdd", Book::Groups, Role::Operator, 0, true},
        {"keyAdd", Book::Groups, Role::User, 0, false},
        {"keyEdit", Book::Groups, Role::User, 1, true}, // shows the record
        {"keyEdit", Book::Groups, Role::Operator, 0, false},
        {"keyDel", Book::Groups, Role::Operator, 3, true},
        {"keyDel", Book::Groups, Role::User, 3, false},
        {"keyImp", Book::Students, Role::User, 0, false},
        {"keyAdd", Book::Users, Role::Administrator, 0, true},
        {"keyAdd", Book::Users, Role::Operator, 0, false},
        {"keyEdit", Book::Users, Role::Operator, 1, false}, // would show passwords
        {"keyImp", Book::Users, Role::Administrator, 0, false},
        {"keyAnl", Book::Workload, Role::User, 0, true},
        {"keyNagrLock", Book::Workload, Role::User, 2, false},
        {"keyNagrLock", Book::Workload, Role::Operator, 0, false},
        {"keyAllDay", Book::Workload, Role::Operator, 0, true},
        {"keyAllDay", Book::Groups, Role::Administrator, 0, false},
        {"keyAdd", Book::Lessons, Role::Administrator, 0, false},
        {"keyDel", Book::Lessons, Role::Administrator, 1, false},
        {"keyImp", Book::Lessons, Role::Operator, 0, true},
    };
    for (const Case& row : cases)
        EXPECT_EQ(isEnabled(row.key, row.book, row.role, row.selected), row.enabled)
            << row.key << " of book " << static_cast<int>(row.book) << ", role "
            << static_cast<int>(row.role);
}

} // namespace
