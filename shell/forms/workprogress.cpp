#include "shell/forms/workprogress.h"

using namespace Qt::StringLiterals;

namespace shell {

WorkProgress::WorkProgress(const QString& name, const QString& text, QWidget* parent)
    : m_box(text, u"Отмена"_s, 0, 100, parent)
{
    constexpr int kShownAfterMilliseconds = 500;
    m_box.setObjectName(name);
    m_box.setWindowTitle(parent->windowTitle());
    m_box.setWindowModality(Qt::ApplicationModal);
    m_box.setAutoClose(false);
    m_box.setAutoReset(false);
    m_box.setMinimumDuration(kShownAfterMilliseconds);
}

bool WorkProgress::operator()(int percent)
{
    if (!m_box.wasCanceled())
        m_box.setValue(percent);
    return !m_box.wasCanceled();
}

} // namespace shell
