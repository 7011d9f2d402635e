#include "shell/access/rights.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// Not for users: what changes the file as a whole, its options or the program's protection,
// and what carries the personal data in it elsewhere.
const QSet<QString>& beyondUsers()
{
    static const QSet<QString> commands = {
        u"mnuFileSaveAs"_s,  u"mnuFileSaveTo"_s, u"mnuFileOpenFrom"_s, u"mnuImpUr"_s,
        u"mnuToolsLock"_s,   u"mnuToolsAcc"_s,   u"mnuToolsArh"_s,     u"mnuToolsArhOpen"_s,
        u"mnuToolsMail"_s,   u"mnuNastroiki"_s,  u"mnuObnovlenie"_s,   u"mnuSprUsers"_s,
        u"mnuImportWizard"_s};
    return commands;
}

} // namespace

Role roleOf(int stored)
{
    switch (stored) {
    case 0:
        return Role::Administrator;
    case 1:
        return Role::Operator;
    default:
        return Role::User;
    }
}

QString roleName(Role role)
{
    switch (role) {
    case Role::Administrator:
        return u"Администратор"_s;
    case Role::Operator:
        return u"Диспетчер"_s;
    case Role::User:
        break;
    }
    return u"Пользователь"_s;
}

bool mayRun(Role role, const QString& command)
{
    if (command == u"mnuSprUsers"_s)
        return mayEditUsers(role);
    return role != Role::User || !beyondUsers().contains(command);
}

bool mayEditBooks(Role role)
{
    return role != Role::User;
}

bool mayEditUsers(Role role)
{
    return role == Role::Administrator;
}

} // namespace shell
