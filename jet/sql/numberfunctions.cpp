#include "jet/error.h"
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/text.h"

#include <cmath>
#include <random>

namespace jet::sql {

namespace {

double finite(double value)
{
    if (!std::isfinite(value))
        throw Error(Fault::Overflow, "переполнение при вычислении");
    return value;
}

double nonZero(double divisor)
{
    if (divisor == 0)
        throw Error(Fault::Overflow, "деление на ноль");
    return divisor;
}

// `+` of two values whose types the statement does not tell.
Value add(const Arguments& arguments)
{
    if (arguments.isText(0) && arguments.isText(1))
        return arguments.text(0) + arguments.text(1);
    constexpr std::int64_t kSafe = std::int64_t{1} << 62; // two of these cannot overflow
    if (arguments.isInteger(0) && arguments.isInteger(1)) {
        const std::int64_t a = arguments.integer(0);
        const std::int64_t b = arguments.integer(1);
        if (a > -kSafe && a < kSafe && b > -kSafe && b < kSafe)
            return a + b;
    }
    return finite(arguments.number(0) + arguments.number(1));
}

Value divide(const Arguments& arguments)
{
    return finite(arguments.number(0) / nonZero(arguments.number(1)));
}

Value intdiv(const Arguments& arguments)
{
    const std::int64_t dividend = arguments.integer(0);
    const std::int64_t divisor = arguments.integer(1);
    nonZero(static_cast<double>(divisor));
    return divisor == -1 ? finite(-static_cast<double>(dividend)) : Value(dividend / divisor);
}

Value mod(const Arguments& arguments)
{
    const std::int64_t divisor = arguments.integer(1);
    nonZero(static_cast<double>(divisor));
    return divisor == -1 ? std::int64_t{0} : arguments.integer(0) % divisor;
}

Value power(const Arguments& arguments)
{
    return finite(std::pow(arguments.number(0), arguments.number(1)));
}

Value abs(const Arguments& arguments)
{
    if (arguments.isInteger(0)) {
        const std::int64_t value = arguments.integer(0);
        if (value != std::numeric_limits<std::int64_t>::min())
            return std::abs(value);
    }
    return std::abs(arguments.number(0));
}

Value integerPart(const Arguments& arguments)
{
    return arguments.isInteger(0) ? arguments.value(0) : Value(std::floor(arguments.number(0)));
}

Value fix(const Arguments& arguments)
{
    return arguments.isInteger(0) ? arguments.value(0) : Value(std::trunc(arguments.number(0)));
}

Value round(const Arguments& arguments)
{
    constexpr int kMostPlaces = 22;
    const int places = arguments.smallInteger(1, 0);
    if (places < 0 || places > kMostPlaces)
        arguments.refuse(1);
    if (arguments.isInteger(0))
        return arguments.value(0);
    return numberOf(roundDigits(arguments.number(0), places, Halves::ToEven));
}

Value sgn(const Arguments& arguments)
{
    const double value = arguments.number(0);
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

Value sqr(const Arguments& arguments)
{
    if (arguments.number(0) < 0)
        arguments.refuse(0);
    return std::sqrt(arguments.number(0));
}

Value exp(const Arguments& arguments)
{
    return finite(std::exp(arguments.number(0)));
}

Value log(const Arguments& arguments)
{
    if (arguments.number(0) <= 0)
        arguments.refuse(0);
    return std::log(arguments.number(0));
}

Value sin(const Arguments& arguments)
{
    return finite(std::sin(arguments.number(0)));
}

Value cos(const Arguments& arguments)
{
    return finite(std::cos(arguments.number(0)));
}

Value tan(const Arguments& arguments)
{
    return finite(std::tan(arguments.number(0)));
}

Value atn(const Arguments& arguments)
{
    return std::atan(arguments.number(0));
}

// A number from 0 up to 1. The sequence is not the one of Jet, which nobody can rely on.
Value rnd(const Arguments&)
{
    thread_local std::mt19937 generator{std::random_device{}()};
    return std::uniform_real_distribution<double>(0, 1)(generator);
}

constexpr Function kFunctions[] = {
    {"add", 2, 2, add},         {"divide", 2, 2, divide},
    {"intdiv", 2, 2, intdiv},   {"mod", 2, 2, mod},
    {"power", 2, 2, power},     {"abs", 1, 1, abs},
    {"int", 1, 1, integerPart}, {"fix", 1, 1, fix},
    {"round", 1, 2, round},     {"sgn", 1, 1, sgn},
    {"sqr", 1, 1, sqr},         {"exp", 1, 1, exp},
    {"log", 1, 1, log},         {"sin", 1, 1, sin},
    {"cos", 1, 1, cos},         {"tan", 1, 1, tan},
    {"atn", 1, 1, atn},         {"rnd", 0, 1, rnd, Nulls::Take, Stability::Varies},
};

} // namespace

std::span<const Function> numberFunctions()
{
    return kFunctions;
}

} // namespace jet::sql
