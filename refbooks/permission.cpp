#include "refbooks/permission.h"

#include "shell/prompt.h"
#include "shell/session.h"

using namespace Qt::StringLiterals;

namespace refbooks {

bool mayChangeBooks(const shell::Session& session, shell::Prompt& prompt)
{
    if (session.mayEditBooks())
        return true;
    prompt.exclamation(
        u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s);
    return false;
}

bool mayChangeBook(Book book, const shell::Session& session, shell::Prompt& prompt)
{
    if (book != Book::Users)
        return mayChangeBooks(session, prompt);
    if (session.mayEditUsers())
        return true;
    prompt.exclamation(u"Справочник пользователей может изменять только Администратор."_s);
    return false;
}

} // namespace refbooks
