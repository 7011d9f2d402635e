#include "shell/forms/datetyping.h"

#include <QApplication>
#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace shell {
namespace {

bool isDigit(const QString& text)
{
    return text.size() == 1 && text.front().isDigit();
}

bool isPoint(const QString& text)
{
    return text == u"."_s || text == u","_s;
}

class DateTyping final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonRelease)
            released(watched);
        else if (event->type() == QEvent::FocusIn && watched == m_box)
            m_typed.clear();
        else if (event->type() == QEvent::KeyPress)
            if (auto* box = qobject_cast<QDateTimeEdit*>(watched))
                return takes(*box, *static_cast<QKeyEvent*>(event));
        return QObject::eventFilter(watched, event);
    }

private:
    // True when nothing is left of the key for the box.
    bool takes(QDateTimeEdit& box, const QKeyEvent& key)
    {
        if (key.key() == Qt::Key_Home && key.modifiers() == Qt::NoModifier) {
            m_typed.clear();
            box.setSelectedSection(box.sectionAt(0));
            return true;
        }
        const bool isBehindDigit = m_box == &box && isDigit(m_typed.right(1));
        const bool hasGoneOn = box.findChild<QLineEdit*>()->hasSelectedText();
        note(box, key.text());
        const QDate date = typedDate();
        if (date.isValid()) {
            m_typed.clear();
            box.setDate(date);
            return true;
        }
        return isPoint(key.text()) && isBehindDigit && hasGoneOn;
    }

    void note(QDateTimeEdit& box, const QString& text)
    {
        if (m_box != &box || (!isDigit(text) && !isPoint(text)))
            m_typed.clear();
        m_box = &box;
        if (m_typed.isEmpty() && box.currentSectionIndex() != 0)
            m_typed = u"-"_s; // what begins in the middle is no whole date
        if (isDigit(text) || isPoint(text))
            m_typed += isPoint(text) ? u"."_s : text;
    }

    QDate typedDate() const
    {
        const QDate date = QDate::fromString(m_typed, u"d.M.yyyy"_s);
        return date.isValid() ? date : QDate::fromString(m_typed, u"ddMMyyyy"_s);
    }

    // A text that was marked with the mouse stays marked.
    void released(QObject* watched)
    {
        m_typed.clear();
        auto* line = qobject_cast<QLineEdit*>(watched);
        auto* box = line ? qobject_cast<QDateTimeEdit*>(line->parentWidget()) : nullptr;
        if (box && !line->hasSelectedText())
            QTimer::singleShot(0, box, [box] { box->setSelectedSection(box->currentSection()); });
    }

    const QObject* m_box = nullptr; // that m_typed went to; compared only
    QString m_typed;                // since its first part was gone to
};

} // namespace

void easeDateTyping(QApplication& program)
{
    program.installEventFilter(new DateTyping(&program));
}

} // namespace shell
