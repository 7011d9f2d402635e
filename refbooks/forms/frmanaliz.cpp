#include "refbooks/forms/frmanaliz.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {

frmAnaliz::frmAnaliz(shell::Session& session, std::vector<std::int64_t> keys, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_keys(std::move(keys))
{
    setObjectName(u"frmAnaliz"_s);
    setWindowTitle(u"Анализ нагрузки"_s);
}

} // namespace refbooks
