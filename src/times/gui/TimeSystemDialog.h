// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// "Times" > "Time system…": the user states the system of the loaded file's times (JD(UTC),
// HJD(UTC) or BJD_TDB), the star's position (RA and Dec, J2000, as degrees or sexagesimal), the
// observatory when it matters (latitude, longitude east, height), and the system to report in;
// "Convert" shows the published results in that system, in a table of the dialog's own. The
// dialog never writes into the main window. A field it cannot read is named in the dialog, in
// words, and nothing is converted until it is put right; the dialog stays open.

#include "session/LightCurveData.h"
#include "times/JulianDate.h"
#include "times/SkyPosition.h"

#include <QDialog>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace dip::times {

// One time to convert: what it is ("1. Parabolic Fit", "Simple Mean") and its time in the
// file's system, or nothing when there is none to convert.
struct TimeToConvert {
    QString name;
    std::optional<JulianDate> time;
};

// What the user stated, once every field reads.
struct TimeSystemChoice {
    TimeSystem fileSystem = TimeSystem::HJD_UTC;
    TimeSystem reportSystem = TimeSystem::BJD_TDB;
    Star star;
    std::optional<Site> site;
};

class TimeSystemDialog : public QDialog {
    Q_OBJECT
public:
    explicit TimeSystemDialog(QWidget* parent = nullptr);

    // The systems shown (Unstated: HJD(UTC) for the file, BJD_TDB for the report).
    void setFileSystem(TimeSystem system);
    void setReportSystem(TimeSystem system);
    // Where "Convert" takes the times from, afresh at every press.
    void setTimesSource(std::function<std::vector<TimeToConvert>()> source);

    // "Convert": reads the fields; when one cannot be read, says which and why in the dialog and
    // returns false with nothing changed. Otherwise fills the table (a time that cannot be
    // converted shows "—" and its reason below the table), emits converted and returns true.
    bool convert();

    // What the dialog says below the table: the field that is wrong, or the times that could not
    // be converted; empty when all is well.
    QString problem() const;

Q_SIGNALS:
    // The user's statement and each time converted (nothing where it could not be), in the order
    // of the times source.
    void converted(const dip::times::TimeSystemChoice& choice,
                   const std::vector<std::optional<dip::times::JulianDate>>& times);

private:
    std::optional<TimeSystemChoice> readFields();
    void showProblem(const QString& text);

    QComboBox* m_fileSystem = nullptr;
    QLineEdit* m_ra = nullptr;
    QLineEdit* m_dec = nullptr;
    QLineEdit* m_site = nullptr;
    QComboBox* m_reportSystem = nullptr;
    QTableWidget* m_table = nullptr;
    QLabel* m_problem = nullptr;
    std::function<std::vector<TimeToConvert>()> m_source;
};

} // namespace dip::times
