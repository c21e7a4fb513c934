#include "values.h"

#include <vector>

namespace bench {

namespace {

constexpr int kFirstYear = 1900;
constexpr int kLastYear = 2199;

int MonthLength(int year, int month)
{
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : lengths[month - 1];
}

struct Calendar {
    std::vector<Moment> days;         // from January 1 of kFirstYear
    std::vector<std::size_t> firsts;  // the index of January 1 of each year, one more at the end
    std::int64_t epoch = 0;           // the index of 1970-01-01
};

Calendar StepCalendar()
{
    Calendar calendar;
    int weekday = 1;  // 1900-01-01 was a Monday
    for (int year = kFirstYear; year <= kLastYear; ++year) {
        calendar.firsts.push_back(calendar.days.size());
        if (year == 1970) {
            calendar.epoch = static_cast<std::int64_t>(calendar.days.size());
        }
        int yearDay = 0;
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= MonthLength(year, month); ++day) {
                calendar.days.push_back({year, month, day, 0, 0, 0, weekday, yearDay++, 0});
                weekday = (weekday + 1) % 7;
            }
        }
    }
    calendar.firsts.push_back(calendar.days.size());
    return calendar;
}

}  // namespace

std::mt19937_64& Random()
{
    static std::mt19937_64 random(19700101);
    return random;
}

std::int64_t Between(std::int64_t low, std::int64_t high)
{
    return std::uniform_int_distribution<std::int64_t>(low, high)(Random());
}

std::int64_t DrawSecond(int firstYear, int lastYear, Moment& moment)
{
    static const Calendar calendar = StepCalendar();
    auto firstOf = [](int year) {
        return static_cast<std::int64_t>(
            calendar.firsts[static_cast<std::size_t>(year - kFirstYear)]);
    };
    std::int64_t index = Between(firstOf(firstYear), firstOf(lastYear + 1) - 1);
    moment = calendar.days[static_cast<std::size_t>(index)];
    moment.hour = static_cast<int>(Between(0, 23));
    moment.minute = static_cast<int>(Between(0, 59));
    moment.second = static_cast<int>(Between(0, 59));
    return (index - calendar.epoch) * 86400 + moment.hour * 3600 + moment.minute * 60 +
           moment.second;
}

const Moments& SharedMoments()
{
    static const Moments shared = [] {
        Moments made;
        for (std::size_t i = 0; i < kValues; ++i) {
            Moment& moment = made.fields[i];
            std::int64_t secs = DrawSecond(kFirstYear, kLastYear, moment);
            moment.nanos = secs < 0 ? 0 : Between(0, 999999999);
            made.instants[i] = secs * 1000000000 + moment.nanos;
        }
        return made;
    }();
    return shared;
}

struct tm TmOf(const Moment& moment)
{
    struct tm tm = {};
    tm.tm_year = moment.year - 1900;
    tm.tm_mon = moment.month - 1;
    tm.tm_mday = moment.day;
    tm.tm_hour = moment.hour;
    tm.tm_min = moment.minute;
    tm.tm_sec = moment.second;
    tm.tm_wday = moment.weekday;
    tm.tm_yday = moment.yearDay;
    tm.tm_zone = "GMT";
    return tm;
}

Moment MomentOf(const struct tm& tm, std::int64_t nanos)
{
    return {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min,
            tm.tm_sec,         tm.tm_wday,    tm.tm_yday, nanos};
}

}  // namespace bench
