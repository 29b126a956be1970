// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"

#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "session/CsvInput.h"
#include "session/MainForm.h"
#include "session/Points.h"
#include "session/Results.h"
#include "session/Session.h"
#include "session/SessionEvents.h"
#include "session/WholeDays.h"

#include <QDir>

namespace dip {

using rt::i16;

QString csvFormatMessage()
{
    return QStringLiteral("Sorry - your data file needs to be in the Comma Separated Variables format.  "
                          "See [menu] Help > Help - Data Files for details.");
}

namespace {

int countCommas(const QString& line) { return static_cast<int>(line.count(QLatin1Char(','))); }

// A line is a header when it holds anything but blanks, signs, points, commas and digits: a
// letter anywhere, an exponent "E" included, makes it one.
bool isHeader(const QString& line)
{
    static const QString allowed = QStringLiteral(" +-.,0123456789");
    for (const QChar c : line)
        if (!allowed.contains(c))
            return true;
    return false;
}

// A time or magnitude field: empty reads as 0, a number (quoted or not) as that number, and
// any other text fails as soon as it would be used as a number.
double numericField(const CsvInput::Field& field)
{
    if (field.text.isEmpty())
        return 0.0;
    return rt::CDbl(field.text);
}

// The Fourier fit's start state, the per-window first-time flags, the range flags and the
// tracing paper's averaging width: everything of the methods that belongs to one light curve.
void resetMethodState()
{
    Session& s = S();
    FourierState& f = s.Fourier;
    f.FourierPar(1) = s.HJD(s.IdxMagMax);
    f.FourierPar(2) = s.Mag(s.IdxMagMax);
    f.FourierPar(3) = 25;
    f.FourierPar(4) = 0.2;
    f.FourierPar(5) = 0.1;
    f.FourierPar(6) = 0.05;
    f.FourierPar(7) = 0.01;
    f.FourierPar(8) = 0.005;
    for (int k = 1; k <= 8; ++k)
        f.ParEdited(k) = rt::True;
    for (int i = 1; i <= s.NumPts; ++i)
        f.FitSig(i) = 0.01;
    f.Alamda = -1;
    f.FourierFitDone = rt::False;
    f.ParEntered = rt::False;
    ResetMethodWindowFlags(s);
}

// The reader itself; at follows it through the file for the message of a fault.
LightCurve readCsvRows(const QString& path, int maxRows, CsvPlace& at)
{
    LightCurve curve;
    curve.source = path;

    // 1-3. Prescan the first two lines.
    QString line1, line2;
    {
        CsvInput in(path);
        at.line = in.lineNumber();
        line1 = in.lineInput();
        at.line = in.lineNumber();
        line2 = in.lineInput();
    }
    const int c1 = countCommas(line1);
    const bool header = isHeader(line1);
    const int c2 = countCommas(line2);
    curve.commas = c2;

    // 4. Not comma-separated: no rows; the caller says so and changes nothing.
    if (c2 == 0)
        return curve;

    // 5-7. Read the rows; a header, or a first line shaped unlike the second, is skipped.
    // With six or more commas no row is read at all and the count becomes -1 (kept unguarded:
    // every later loop over the points then runs zero times).
    curve.firstLineSkipped = c1 != c2 || header;
    int i = 0;
    {
        CsvInput in(path);
        if (curve.firstLineSkipped)
            in.lineInput();
        if (c2 <= 5) {
            i = 1;
            do {
                at = CsvPlace{in.lineNumber(), 1, QString()};
                if (maxRows >= 0 && i == maxRows + 1)
                    rt::raise(9);
                const CsvInput::Field time = in.input();
                at.field = time.text;
                const double t = numericField(time);
                at = CsvPlace{in.lineNumber(), 2, QString()};
                const CsvInput::Field mag = in.input();
                at.field = mag.text;
                const double m = numericField(mag);
                curve.times.push_back(t);
                curve.mags.push_back(m);
                const TimeParts parts = SplitTimeText(time.text, t);
                curve.wholeDays.push_back(parts.whole);
                curve.dayFractions.push_back(parts.fraction);
                for (int extra = 1; extra <= c2 - 1; ++extra) {
                    at = CsvPlace{in.lineNumber(), 2 + extra, QString()};
                    in.input(); // columns 3 to 6 are read and thrown away
                }
                ++i;
            } while (!in.eof());
        }
    }
    curve.rowCount = i - 1;
    return curve;
}

} // namespace

LightCurve readCsv(const QString& path, int maxRows, CsvPlace* place)
{
    CsvPlace at;
    try {
        return readCsvRows(path, maxRows, at);
    } catch (const rt::RuntimeError&) {
        if (place)
            *place = at;
        throw;
    }
}

void InstallLightCurve(const LightCurve& curve)
{
    Session& s = S();
    MainForm& form = mainForm();

    // The rows as the reader stores them; a 1001st row is out of the arrays' range.
    const int rows = curve.rowCount;
    if (rows > 1000)
        rt::raise(9);
    // With the toolkit's "Subtract whole days" on, the whole day of the first row is set apart in
    // HJDOffset and every time is stored less it (exactly, for times within a factor of two of the offset);
    // with it off
    // the times are stored as read and HJDOffset stays 0.
    s.WholeDaysSubtracted = s.SubtractWholeDays;
    s.HJDOffset = s.SubtractWholeDays ? WholeDayOffset(curve) : 0;
    s.TimesSystem = curve.timeSystem;
    const bool parts = curve.hasTimeParts();
    for (int k = 1; k <= rows; ++k) {
        const std::size_t i = static_cast<std::size_t>(k - 1);
        const double t = curve.times[i];
        if (!s.SubtractWholeDays)
            s.ReadHJD(k) = t;
        else if (parts) // the whole days apart first: every digit of the fraction as written
            s.ReadHJD(k) = (curve.wholeDays[i] - s.HJDOffset) + curve.dayFractions[i];
        else
            s.ReadHJD(k) = t - s.HJDOffset;
        s.ReadMag(k) = curve.mags[i];
    }
    s.NumOrig = i16(rows);
    s.NumPts = s.NumOrig;

    // 8. The reader's own sign is -1 (an unset value times 2 minus 1); step 17 puts it right.
    s.MagSign = -1;

    // 9-10.
    for (int k = 1; k <= s.NumPts; ++k) {
        s.OrigHJD(k) = s.ReadHJD(k);
        s.HJD(k) = s.ReadHJD(k);
        s.Mag(k) = rt::fin(s.ReadMag(k) * s.MagSign);
        s.OrigMag(k) = s.Mag(k);
    }
    for (int k = 1; k <= s.NumPts; ++k)
        s.Deleted(k) = 0;

    // 11. Extents of the still inverted magnitudes.
    UpdateExtents();
    SnapshotExtents();

    // 12-14.
    form.setTitle(QStringLiteral("Dipscope - ") + s.DataName);
    form.clearAndHidePlotData();
    UntickResults();

    // 15. The Fourier start values come from the inverted magnitudes: parameter 1 is the time
    // of the brightest point and parameter 2 its negated magnitude. Step 17 does not redo them.
    resetMethodState();

    // 16.
    for (int k = 13; k <= 16; ++k)
        form.setText(k, QString());
    form.setOrigCountLabel(QString::number(s.NumOrig));
    form.setEditedCountLabel(QString::number(s.NumPts));

    // 17. "+Mags" after every load, whatever was chosen before.
    form.showMagOption(0);
    ApplyMagSense(0);

    notifySessionChange({SessionChange::Loaded, 0, &curve});
}

bool LoadDataFile()
{
    const LightCurve curve = readCsv(S().DataPath);
    if (curve.commas == 0) {
        rt::MsgBox(csvFormatMessage());
        return false;
    }
    InstallLightCurve(curve);
    return true;
}

QString DataPathOf(const QString& dir, const QString& name) { return dir + QDir::separator() + name; }

bool OpenDataFile(const QString& dir, const QString& name)
{
    Session& s = S();
    s.DataDir = dir;
    s.DataName = name;
    s.DataPath = DataPathOf(dir, name);
    const bool loaded = LoadDataFile();
    ClearResultTexts();
    return loaded;
}

} // namespace dip
