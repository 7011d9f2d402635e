#include "refbooks/toolbar.h"

#include "refbooks/worded.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

// What only the workload has. keyPlac is reserved and never shown.
constexpr std::array<std::string_view, 8> kOnlyWorkload = {
    "keySep2", "keySep3", "keyPlac", "keyAllDay", "keyAnl", "keyCopyTo", "keyNagrLock", "keyJur"};

template <class Keys>
bool isAmong(const Keys& keys, std::string_view key)
{
    return std::ranges::find(keys, key) != std::end(keys);
}

const std::vector<ToolbarButton>& allButtons()
{
    static const std::vector<ToolbarButton> buttons = {
        {"keyAdd", u"Добавить"_s},
        {"keyEdit", u"Изменить"_s},
        {"keyCopy", u"Копировать"_s},
        {"keyCopyTo", u"Копировать в другие группы и подгруппы"_s},
        {"keySep2", {}},
        {"keyDel", u"Удалить"_s},
        {"keyAllDay", u"Удалить всю нагрузку"_s},
        {"keySep3", {}},
        {"keyNagrLock", u"Связать или освободить"_s},
        {"keyPlac", {}},
        {"keyAnl", u"Сравнить план и проведенные часы"_s},
        {"keyJur", u"Журнал посещаемости"_s},
        {"keySep5", {}},
        {"keyImp", u"Импорт"_s},
        {"keyIndRasp", {}},
    };
    return buttons;
}

bool isShown(std::string_view key, Book book)
{
    if (key == "keyPlac" || key == "keyIndRasp") // reserved, they do nothing
        return false;
    if (key == "keySep5")
        return book == Book::Students;
    if (key == "keyImp")
        return book != Book::Users;
    return book == Book::Workload || !isAmong(kOnlyWorkload, key);
}

} // namespace

std::vector<ToolbarButton> toolbarButtons(Book book, const shell::Wording& wording)
{
    std::vector<ToolbarButton> shown;
    for (const ToolbarButton& button : allButtons())
        if (isShown(button.key, book))
            shown.push_back({button.key, worded(wording, button.text)});
    return shown;
}

bool mayChange(Book book, shell::Role role)
{
    return book == Book::Users ? shell::mayEditUsers(role) : shell::mayEditBooks(role);
}

bool isEnabled(std::string_view key, Book book, shell::Role role, int selectedRows)
{
    static constexpr std::array<std::string_view, 6> kOnRows = {
        "keyEdit", "keyCopy", "keyJur", "keyDel", "keyCopyTo", "keyNagrLock"};
    static constexpr std::array<std::string_view, 3> kReading = {"keyEdit", "keyAnl", "keyJur"};
    if (!isShown(key, book))
        return false;
    if (book == Book::Lessons && key != "keyImp") // lessons are imported, not typed
        return false;
    if (!mayChange(book, role) && (!isAmong(kReading, key) || book == Book::Users))
        return false;
    return selectedRows >= 1 || !isAmong(kOnRows, key);
}

} // namespace refbooks
