// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The three list boxes of the file dialogs: a drive list, a directory list that shows the
// folder hierarchy down to the current folder with its subfolders below, and a file list that
// shows the files of one folder matching a pattern. Paths are given and returned with the
// platform's separators.

#include <QComboBox>
#include <QListWidget>

namespace dip {

// The drive list. Where the system has no drive letters it holds the file-system roots.
class DriveList : public QComboBox {
    Q_OBJECT
public:
    explicit DriveList(QWidget* parent = nullptr);
    QString drive() const { return currentText(); }
    // Shows the drive that holds path, without a change event (as the form is loaded).
    void showDriveOf(const QString& path);

Q_SIGNALS:
    // The user chose another drive (Drive1_Change).
    void changed();

private:
    int m_shown = -1;
};

// The directory list. Double-click or Enter on an entry makes it the current folder.
class DirList : public QListWidget {
    Q_OBJECT
public:
    explicit DirList(QWidget* parent = nullptr);

    QString path() const;
    // Makes path the current folder and re-lists; a change emits changed() (Dir1_Change). A
    // folder that does not exist or cannot be read raises "Path not found" (76).
    void setPath(const QString& path);
    // The folder shown when the form is loaded: set without a change event.
    void showPath(const QString& path);
    // The folder an entry stands for, and its depth (the root is 0).
    QString entryPath(int row) const;
    int entryLevel(int row) const;

Q_SIGNALS:
    void changed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void relist();
    QString m_path; // absolute and clean, with '/' separators
};

// The file list: the files (not folders, not hidden files) of path matching pattern, which may
// hold several wildcards separated by ";"; names match without regard to case and are listed
// in that order.
class FileList : public QListWidget {
    Q_OBJECT
public:
    explicit FileList(QWidget* parent = nullptr);

    QString path() const;
    void setPath(const QString& path);
    QString pattern() const { return m_pattern; }
    void setPattern(const QString& pattern);
    // List(i): the name at index i, empty when there is none.
    QString entry(int index) const;

Q_SIGNALS:
    // Any mouse button pressed on the list, before the press selects anything (File1_MouseDown).
    void mouseDown();
    // An entry chosen by a click or by the keyboard (File1_Click).
    void entryClicked(const QString& name);
    // An entry double-clicked or Enter pressed on it (File1_DblClick).
    void entryDoubleClicked(const QString& name);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void relist();
    QString m_path;
    QString m_pattern = QStringLiteral("*.*");
};

} // namespace dip
