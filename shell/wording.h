#pragma once

#include <QHash>
#include <QString>

namespace shell {

enum class Institution { College = 0, School = 1 };

// Turns visible texts from the college vocabulary, in which they are written, into the
// school's. Every text that names lessons, teachers, groups, specialities, departments,
// disciplines or students passes through it once, where it is shown.
class Wording
{
public:
    explicit Wording(Institution institution = Institution::College)
        : m_institution(institution)
    {}

    Institution institution() const { return m_institution; }
    bool isSchool() const { return m_institution == Institution::School; }

    // Applies the matching row number `occurrence` (0 = the first that matches), and with
    // `goOn` every later matching row too, each to the result of the one before.
    QString translate(const QString& text, bool goOn = false, int occurrence = 0) const;
    // The same, but a text that the table would spoil has its school form in `own`.
    QString translate(const QString& text, const QHash<QString, QString>& own,
                      bool goOn = false) const;

private:
    Institution m_institution;
};

} // namespace shell
