#pragma once

#include "jet/value.h"

#include <span>
#include <string_view>
#include <vector>

namespace demo {

// Days are whole numbers of jet::DateTime, so 1 September 2025 is one int.
int dayOf(int year, int month, int day);

struct Holiday
{
    int day;
    int month;
    std::string_view name;
};
std::span<const Holiday> holidays();

// A term: its first and last day, both included.
struct Term
{
    int first;
    int last;
};

// The study year of the demonstration: two terms with the winter break between them.
class Calendar
{
public:
    explicit Calendar(int startYear);

    int yearStart() const { return dayOf(m_startYear, 9, 1); }
    int yearEnd() const { return dayOf(m_startYear + 1, 6, 30); }
    std::span<const Term> terms() const { return m_terms; }
    // Days with lessons of a term, ascending: neither Sundays nor holidays.
    std::vector<int> studyDays(const Term& term) const;

private:
    int m_startYear;
    std::vector<Term> m_terms;
};

// 0 = Monday ... 6 = Sunday.
int weekday(int day);
int monthOf(int day);
// Last day of the month that holds `day`.
int monthEnd(int day);

} // namespace demo
