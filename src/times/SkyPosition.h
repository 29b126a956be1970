// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The star's position and the observatory's, as a user types them.
//
// Right ascension (J2000):
//   - a plain number is degrees, 0 <= RA < 360 ("248.5846", also "248.5846d" or "248.5846°");
//   - a number followed by "h" is hours ("16.5723h");
//   - two or three fields separated by colons, blanks or the letters h, m, s are hours,
//     minutes and seconds ("16:34:20.33", "16 34 20.33", "16h34m20.33s", "16:34.339"): whole
//     hours 0 to 23, whole minutes 0 to 59 unless they are the last field, seconds below 60.
// Declination (J2000):
//   - a plain number is degrees, -90 to +90 ("57.1623", "-5.25d");
//   - two or three fields separated by colons, blanks or the letters d (or °), m (or '), s (or
//     ") are degrees, minutes and seconds with one sign in front that applies to all of them
//     ("+57:09:44.3", "-00 30 00", "57d09m44.3s").
// Site: "LAT,LON,HEIGHT" - geodetic latitude (north positive) and longitude (EAST positive),
//   each in degrees written like a declination, and the height above the WGS84 ellipsoid in
//   metres (-500 to 10000, an "m" after it allowed). Longitude -180 to 360.
//
// Every parser answers with the value in degrees (metres) or with a message that names the text
// and says what was wrong.

#include <QString>

namespace dip::times {

struct Angle {
    bool ok = false;
    double degrees = 0;
    QString error; // set when !ok
};

Angle parseRightAscension(const QString& text);
Angle parseDeclination(const QString& text);

struct Site {
    double latitude = 0;  // degrees, north positive
    double longitude = 0; // degrees, east positive
    double height = 0;    // metres above the WGS84 ellipsoid
};

struct ParsedSite {
    bool ok = false;
    Site site;
    QString error; // set when !ok
};

ParsedSite parseSite(const QString& text);

// The star: right ascension and declination in degrees, J2000 (ICRS).
struct Star {
    double ra = 0;
    double dec = 0;
};

} // namespace dip::times
