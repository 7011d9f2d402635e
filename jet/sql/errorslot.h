#pragma once

#include "jet/error.h"

#include <exception>
#include <utility>

#include <sqlite3.h>

namespace jet::sql {

// Carries an exception across SQLite, which is C and knows only its own result codes: a
// callback keeps what it caught, and whoever called SQLite throws it again.
class ErrorSlot
{
public:
    // The first error of a statement is the cause; later ones follow from it.
    void keep(std::exception_ptr error) noexcept
    {
        if (!m_error)
            m_error = std::move(error);
    }
    void clear() noexcept { m_error = nullptr; }
    // Throws what was kept, if anything, and is empty afterwards.
    void rethrow()
    {
        if (auto error = std::exchange(m_error, nullptr))
            std::rethrow_exception(error);
    }

private:
    std::exception_ptr m_error;
};

// Runs the body of an SQLite callback and keeps what it throws.
template <class Body>
int guarded(ErrorSlot& slot, Body body) noexcept
{
    try {
        body();
        return SQLITE_OK;
    } catch (...) {
        slot.keep(std::current_exception());
        return SQLITE_ERROR;
    }
}

} // namespace jet::sql
