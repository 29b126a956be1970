// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/TimeTool.h"

#include "app/CommandLine.h"

#include "times/JulianDate.h"
#include "times/SkyPosition.h"
#include "times/TimeConversion.h"

#include <optional>
#include <vector>

namespace dip {

namespace {

const char* const usageText =
    "usage: dipscope-time --from jd|hjd|bjd --to jd|hjd|bjd --ra RA --dec DEC\n"
    "         [--site LAT,LON,HEIGHT] T1 [T2 ...]\n"
    "Converts full Julian dates between JD(UTC), HJD(UTC) and BJD_TDB for the star at RA, DEC\n"
    "(J2000), seen from the Earth's centre or from the site, and prints one time a line with 10\n"
    "decimals.\n"
    "  RA   degrees (248.5846), hours with h (16.5723h), or hours:minutes:seconds (16:34:20.33)\n"
    "  DEC  degrees (57.1623) or degrees:minutes:seconds (+57:09:44.3)\n"
    "  LAT,LON,HEIGHT  degrees north, degrees EAST, metres (49.4,8.7,560)\n"
    "Options take their value as the next argument or after '='.\n";

struct Options {
    std::optional<TimeSystem> from, to;
    std::optional<times::Star> star;
    std::optional<times::Site> site;
    std::vector<times::JulianDate> times;
};

TimeSystem systemValue(const QString& option, const QString& value)
{
    TimeSystem system = TimeSystem::Unstated;
    if (!times::parseTimeSystemKey(value, &system))
        throw UsageError{QStringLiteral("%1 takes jd, hjd or bjd, not '%2'").arg(option, value)};
    return system;
}

Options parseOptions(const QStringList& arguments)
{
    Options o;
    std::optional<times::Angle> ra, dec;
    CommandLine line(arguments);
    while (line.next()) {
        if (line.isOperand()) {
            times::JulianDate t;
            if (!times::parseJulianDate(line.operand(), &t))
                throw UsageError{QStringLiteral("'%1' is not a Julian date").arg(line.operand())};
            o.times.push_back(t);
            continue;
        }
        const QString arg = line.option();
        if (arg == QLatin1String("--from")) {
            o.from = systemValue(arg, line.value());
        } else if (arg == QLatin1String("--to")) {
            o.to = systemValue(arg, line.value());
        } else if (arg == QLatin1String("--ra")) {
            ra = times::parseRightAscension(line.value());
            if (!ra->ok)
                throw UsageError{ra->error};
        } else if (arg == QLatin1String("--dec")) {
            dec = times::parseDeclination(line.value());
            if (!dec->ok)
                throw UsageError{dec->error};
        } else if (arg == QLatin1String("--site")) {
            const times::ParsedSite site = times::parseSite(line.value());
            if (!site.ok)
                throw UsageError{site.error};
            o.site = site.site;
        } else {
            line.unknown();
        }
    }
    if (!o.from || !o.to)
        throw UsageError{QStringLiteral("--from and --to are needed")};
    if (!ra || !dec)
        throw UsageError{QStringLiteral("--ra and --dec are needed")};
    if (o.times.empty())
        throw UsageError{QStringLiteral("no time given")};
    o.star = times::Star{ra->degrees, dec->degrees};
    return o;
}

} // namespace

int RunTimeTool(const QStringList& arguments, std::FILE* out, std::FILE* err)
{
    if (arguments.contains(QStringLiteral("--help"))) {
        std::fputs(usageText, out);
        return 0;
    }
    Options o;
    try {
        o = parseOptions(arguments);
    } catch (const UsageError& e) {
        print(err, QStringLiteral("dipscope-time: %1\n").arg(e.what));
        std::fputs(usageText, err);
        return 64;
    }

    // Every time is converted before anything is printed, so that a script gets all the lines
    // or none.
    const times::TimeConverter converter(*o.star, o.site);
    QString lines;
    QString warning;
    for (const times::JulianDate& t : o.times) {
        const times::Converted c = converter.convert(t, *o.from, *o.to);
        if (!c.ok) {
            print(err, QStringLiteral("dipscope-time: %1\n").arg(c.error));
            return 1;
        }
        if (!c.warning.isEmpty())
            warning = c.warning;
        lines += times::formatJulianDate(c.time, 10) + QLatin1Char('\n');
    }
    if (!warning.isEmpty())
        print(err, QStringLiteral("dipscope-time: warning: %1\n").arg(warning));
    print(out, lines);
    return 0;
}

} // namespace dip
