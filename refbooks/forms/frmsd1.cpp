#include "refbooks/forms/frmsd1.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {

frmSD1::frmSD1(std::unique_ptr<BookRecord> record, shell::Session& session, shell::Prompt& prompt,
               QWidget* parent)
    : QDialog(parent)
    , m_record(std::move(record))
    , m_session(session)
    , m_prompt(prompt)
{
    setObjectName(u"frmSD1"_s);
    setWindowTitle(m_record->caption());
}

frmSD1::~frmSD1() = default;

} // namespace refbooks
