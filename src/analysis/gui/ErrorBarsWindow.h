// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// "Error bars": each published result with its method's own error, its bootstrap error and
// percentiles, Deeg's error for Kwee and van Woerden, the failed replicates, and the weighted
// mean with the bootstrap errors beside the one of "Calc. Means". The replicates run on a
// worker thread (which itself spreads them over every core); the window polls their progress,
// so the main window stays responsive, and Cancel stops them between two replicates.

#include "analysis/PublishedBootstrap.h"

#include <QWidget>

#include <atomic>
#include <memory>
#include <optional>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTableWidget;
class QThread;
class QTimer;

namespace dip {

class ErrorBarsWindow : public QWidget {
    Q_OBJECT

public:
    explicit ErrorBarsWindow(QWidget* parent = nullptr);
    ~ErrorBarsWindow() override; // cancels a run and waits for it

    // Takes the published results from the session and starts; false (and says why in the
    // status line) when a run is under way or nothing is published.
    bool start();
    void cancel();
    bool isRunning() const;

    void setReplicates(int b);
    void setSeed(int seed);

    // What the last finished run found.
    const std::optional<PublishedErrors>& result() const { return m_result; }
    QTableWidget* table() const { return m_table; }
    QProgressBar* progressBar() const { return m_progress; }
    QPushButton* startButton() const { return m_start; }
    QPushButton* cancelButton() const { return m_cancel; }
    QCheckBox* correlatedNoiseBox() const { return m_correlated; }
    QString statusText() const;
    QString meansText() const;

Q_SIGNALS:
    // From the window's thread: replicates done of all rows.
    void progressed(int done, int total);
    void finished();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct Run;

    void poll();
    void done();
    void showResult(const PublishedErrors& errors);

    QSpinBox* m_replicates = nullptr;
    QSpinBox* m_seed = nullptr;
    QCheckBox* m_correlated = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_cancel = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_means = nullptr;
    QTableWidget* m_table = nullptr;
    QTimer* m_timer = nullptr;

    std::shared_ptr<Run> m_run;
    std::unique_ptr<QThread> m_thread;
    std::optional<PublishedErrors> m_result;
    int m_lastDone = -1;
};

} // namespace dip
