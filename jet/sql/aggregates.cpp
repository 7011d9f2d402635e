// Jet's aggregates that SQLite does not have.
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/sql/sqliteerror.h"

#include <algorithm>
#include <cmath>

namespace jet::sql {

namespace {

// Mean and squared deviations by Welford's recurrence, which does not lose the digits of
// large numbers that lie close together. SQLite hands out zeroed bytes, the empty state.
struct Spread
{
    std::int64_t count;
    double mean;
    double squares;
};

void addToSpread(sqlite3_context* context, int, sqlite3_value** values)
{
    if (sqlite3_value_type(values[0]) == SQLITE_NULL)
        return;
    auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, sizeof(Spread)));
    if (!spread)
        return sqlite3_result_error_nomem(context);
    auto& errors = *static_cast<ErrorSlot*>(sqlite3_user_data(context));
    const int code = guarded(errors, [&] {
        const double value = Arguments("stdev", std::span(values, 1)).number(0);
        const double before = value - spread->mean;
        ++spread->count;
        spread->mean += before / static_cast<double>(spread->count);
        spread->squares += before * (value - spread->mean);
    });
    if (code != SQLITE_OK)
        sqlite3_result_error_code(context, code);
}

// Divided by one less than the count for a sample, by the count for the whole population;
// NULL where there are too few values.
enum class Of { Sample, Population };

template <Of of, bool root>
void spreadResult(sqlite3_context* context)
{
    const auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, 0));
    const std::int64_t divisor = (spread ? spread->count : 0) - (of == Of::Sample ? 1 : 0);
    if (divisor < 1)
        return;
    const double variance = spread->squares / static_cast<double>(divisor);
    sqlite3_result_double(context, root ? std::sqrt(variance) : variance);
}

// The value of the first or last row of a group, NULL included.
struct Kept
{
    sqlite3_value* value;
    bool any;
};

template <bool first>
void keepValue(sqlite3_context* context, int, sqlite3_value** values)
{
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));
    if (!kept)
        return sqlite3_result_error_nomem(context);
    if (first && kept->any)
        return;
    sqlite3_value_free(kept->value);
    kept->value = sqlite3_value_dup(values[0]);
    kept->any = true;
}

void keptResult(sqlite3_context* context)
{
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
    if (!kept || !kept->value)
        return;
    sqlite3_result_value(context, kept->value);
    sqlite3_value_free(kept->value);
    kept->value = nullptr;
}

struct Aggregate
{
    const char* name;
    void (*step)(sqlite3_context*, int, sqlite3_value**);
    void (*final)(sqlite3_context*);
};

constexpr Aggregate kAggregates[] = {
    {"jet_first", keepValue<true>, keptResult},
    {"jet_last", keepValue<false>, keptResult},
    {"jet_stdev", addToSpread, spreadResult<Of::Sample, true>},
    {"jet_stdevp", addToSpread, spreadResult<Of::Population, true>},
    {"jet_var", addToSpread, spreadResult<Of::Sample, false>},
    {"jet_varp", addToSpread, spreadResult<Of::Population, false>},
};

} // namespace

void registerAggregates(sqlite3* connection, ErrorSlot& errors)
{
    for (const Aggregate& aggregate : kAggregates) {
        check(connection, sqlite3_create_function_v2(
                              connection, aggregate.name, 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                              &errors, nullptr, aggregate.step, aggregate.final, nullptr));
    }
}

} // namespace jet::sql
