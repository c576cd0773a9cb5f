#include "formats/clocktime.h"

#include "base/ascii.h"
#include "base/runtimeerror.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace {

constexpr std::size_t MostDigits = 7;
constexpr std::size_t MostDecimals = 3;
constexpr std::array<std::int64_t, MostDecimals + 1> Units{1, 10, 100, 1000};
constexpr std::array<double, MostDigits + 1> Powers{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

struct Field {
    std::int64_t value = 0;
    std::size_t digits = 0;
};

/// Takes the digits that the text begins with.
Field TakeField(std::string_view& text) {
    Field field;
    while (field.digits < text.size() && IsAsciiDigit(text[field.digits])) {
        if (field.digits < MostDigits)
            field.value = field.value * 10 + (text[field.digits] - '0');
        ++field.digits;
    }
    text.remove_prefix(field.digits);
    return field;
}

bool TakeColon(std::string_view& text) {
    if (!text.starts_with(':'))
        return false;
    text.remove_prefix(1);
    return true;
}

/// Beyond this nothing is written.
bool CanBeTold(double seconds) {
    constexpr double TooManyHours = 32768;
    return std::abs(seconds) / 3600 < TooManyHours;
}

std::int64_t UnitsOf(double seconds, std::size_t decimals) {
    if (!CanBeTold(seconds))
        throw RuntimeError(RuntimeError::Number::Overflow);
    return std::llround(seconds * static_cast<double>(Units[decimals]));
}

/// "00:00:01.500", as most times arrive; the general way gives the same, only slower.
std::optional<ClockTime> ParseUsual(std::string_view text) {
    constexpr std::string_view Shape = "00:00:00.000";
    if (text.size() != Shape.size())
        return std::nullopt;
    std::array<unsigned, Shape.size()> digits{};
    bool wrong = false;
    for (std::size_t i = 0; i < Shape.size(); ++i) {
        digits[i] = static_cast<unsigned char>(text[i]) - static_cast<unsigned>(Shape[i]);
        wrong = wrong || digits[i] > (Shape[i] == '0' ? 9U : 0U);
    }
    if (wrong || digits[3] > 5 || digits[6] > 5)
        return std::nullopt;
    const unsigned hours = digits[0] * 10 + digits[1];
    const unsigned minutes = digits[3] * 10 + digits[4];
    const unsigned seconds = digits[6] * 10 + digits[7];
    const unsigned thousandths = digits[9] * 100 + digits[10] * 10 + digits[11];
    return ClockTime{static_cast<double>((hours * 60 + minutes) * 60 + seconds) +
                         static_cast<double>(thousandths) / 1000,
                     ClockForm(), true};
}

void AppendPadded(std::string& out, std::int64_t value, std::size_t digits) {
    char form[20];
    const char* const end = std::to_chars(std::begin(form), std::end(form), value).ptr;
    const auto length = static_cast<std::size_t>(end - form);
    if (length < digits)
        out.append(digits - length, '0');
    out.append(form, length);
}

} // namespace

std::optional<ClockTime> ParseClock(std::string_view text) {
    if (const auto usual = ParseUsual(text))
        return usual;
    const bool negative = text.starts_with('-');
    if (negative)
        text.remove_prefix(1);
    Field hours;
    Field minutes = TakeField(text);
    if (!TakeColon(text))
        return std::nullopt;
    Field seconds = TakeField(text);
    const bool withHours = TakeColon(text);
    if (withHours) {
        hours = minutes;
        minutes = seconds;
        seconds = TakeField(text);
    }
    const auto wrong = [](const Field& field) {
        return field.digits == 0 || field.digits > MostDigits;
    };
    if (wrong(minutes) || wrong(seconds) || (withHours && wrong(hours)))
        return std::nullopt;

    ClockTime time;
    time.form.hourDigits = static_cast<std::uint8_t>(withHours ? hours.digits : 2);
    time.form.shortened = !withHours;
    time.form.decimals = 0;
    double fraction = 0;
    bool plain = true;
    if (!text.empty()) {
        time.form.point = text.front();
        if (text.front() != '.' && text.front() != ',')
            return std::nullopt;
        text.remove_prefix(1);
        const Field field = TakeField(text);
        if (field.digits == 0 || !text.empty())
            return std::nullopt;
        plain = field.digits <= MostDecimals;
        time.form.decimals = static_cast<std::uint8_t>(std::min(field.digits, MostDecimals));
        const std::size_t digits = std::min(field.digits, MostDigits);
        fraction = static_cast<double>(field.value) / Powers[digits];
    }
    const std::int64_t whole = (hours.value * 60 + minutes.value) * 60 + seconds.value;
    time.seconds = static_cast<double>(whole) + fraction;
    time.plain = plain && minutes.digits == 2 && seconds.digits == 2 && minutes.value < 60 &&
                 seconds.value < 60 && whole < std::int64_t{32768} * 3600 &&
                 !(negative && time.seconds == 0);
    if (negative)
        time.seconds = -time.seconds;
    return time;
}

void AppendClock(std::string& out, double seconds, const ClockForm& form) {
    const std::int64_t units = UnitsOf(seconds, form.decimals);
    const std::int64_t second = Units[form.decimals];
    const std::int64_t whole = std::abs(units) / second;
    if (units < 0)
        out += '-';
    if (!form.shortened || whole >= 3600) {
        AppendPadded(out, whole / 3600, form.hourDigits);
        out += ':';
    }
    AppendPadded(out, whole / 60 % 60, 2);
    out += ':';
    AppendPadded(out, whole % 60, 2);
    if (form.decimals > 0) {
        out += form.point;
        AppendPadded(out, std::abs(units) % second, form.decimals);
    }
}

bool WrittenLike(const ClockTime& time, const ClockForm& form) {
    if (!time.plain || time.form.decimals != form.decimals ||
        (form.decimals > 0 && time.form.point != form.point))
        return false;
    const double hours = std::floor(std::abs(time.seconds) / 3600);
    if (time.form.shortened || (form.shortened && hours == 0))
        return time.form.shortened == form.shortened;
    return time.form.hourDigits == form.hourDigits ||
           (time.form.hourDigits > form.hourDigits && hours >= Powers[time.form.hourDigits - 1U]);
}

ClockForm ShortestForm(double seconds, ClockForm form, std::uint8_t least) {
    std::int64_t units = UnitsOf(seconds, form.decimals);
    for (; form.decimals > least && units % 10 == 0; units /= 10)
        --form.decimals;
    return form;
}

bool SameClock(double a, double b, const ClockForm& form) {
    if (!CanBeTold(a) || !CanBeTold(b))
        return a == b;
    return UnitsOf(a, form.decimals) == UnitsOf(b, form.decimals);
}
