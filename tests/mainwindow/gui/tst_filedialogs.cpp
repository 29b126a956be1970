// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MainWindowTestSupport.h"

#include "mainwindow/gui/FileLists.h"
#include "mainwindow/gui/TwipsLayout.h"
#include "mainwindow/gui/frmMain.h"
#include "mainwindow/gui/frmOpen.h"
#include "mainwindow/gui/frmSaveAs.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace dip;
using namespace dip::test;

namespace {

QStringList listed(const QListWidget* list)
{
    QStringList names;
    for (int i = 0; i < list->count(); ++i)
        names << list->item(i)->text();
    return names;
}

QPoint centreOf(const QListWidget* list, int row) { return list->visualItemRect(list->item(row)).center(); }

int rowOf(const QListWidget* list, const QString& name)
{
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->text() == name)
            return i;
    return -1;
}

// A double-click as the window system delivers it: press, release, then the double-click.
void doubleClick(QListWidget* list, int row)
{
    const QPoint at = centreOf(list, row);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

QString native(const QString& path) { return QDir::toNativeSeparators(path); }

struct SessionFiles {
    QString dir, name, path;
    rt::Integer numPts;
    friend bool operator==(const SessionFiles& a, const SessionFiles& b)
    {
        return a.dir == b.dir && a.name == b.name && a.path == b.path && a.numPts == b.numPts;
    }
};

SessionFiles sessionFiles() { return {S().DataDir, S().DataName, S().DataPath, S().NumPts}; }

} // namespace

class FileDialogsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void captions_data();
    void captions();
    void preparedAtStart();
    void driveListHoldsTheRoots();
    void folderListShowsHierarchyAndSubfolders();
    void openReListsWithCsv();
    void saveReListsWithTxt();
    void folderChangeFillsNameWithFirstFile();
    void folderChangeByEnter();
    void folderChangeInEmptyFolderEmptiesName();
    void allFilesPattern();
    void mouseDownShowsFirstFileThenClickReplacesIt();
    void keyboardSelectionNamesTheFile();
    void doubleClickOpens();
    void cancelOpenLeavesSessionUntouched();
    void cancelSaveAfterTypingKeepsName();
    void saveRecordsFolderAndNameOnly();
    void missingFolderRaises();
    void resize_data();
    void resize();

private:
    std::unique_ptr<WindowTestScope> m_scope;
    std::unique_ptr<frmMain> m_window;
};

void FileDialogsTest::initTestCase() { prepareWindowTests(); }

void FileDialogsTest::init()
{
    m_scope = std::make_unique<WindowTestScope>();
    // The folder the program starts in: two data files, a text file, a file without an
    // extension, a hidden file, two subfolders and a hidden one.
    m_scope->folder.write(QStringLiteral("zeta.csv"), dipCurve(20, 3));
    m_scope->folder.write(QStringLiteral("Alpha.CSV"), dipCurve(15, 2));
    m_scope->folder.write(QStringLiteral("notes.txt"), "not data\nat all\n");
    m_scope->folder.write(QStringLiteral("README"), "no extension\n");
    m_scope->folder.write(QStringLiteral(".hidden.csv"), dipCurve(10, 2));
    m_scope->folder.write(QStringLiteral("beta/b2.csv"), dipCurve(22, 4));
    m_scope->folder.write(QStringLiteral("beta/a1.csv"), dipCurve(21, 4));
    m_scope->folder.write(QStringLiteral("beta/report.txt"), "text\n");
    m_scope->folder.mkdir(QStringLiteral("alpha"));
    m_scope->folder.mkdir(QStringLiteral(".secret"));
    m_window = startMainWindow();
}

void FileDialogsTest::cleanup()
{
    m_window.reset();
    m_scope.reset();
}

void FileDialogsTest::captions_data()
{
    QTest::addColumn<bool>("save");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    for (bool save : {false, true}) {
        const char* form = save ? "frmSaveAs " : "frmOpen ";
        const std::pair<const char*, const char*> rows[] = {
            {"Label1", "File Name:"},   {"Label2", "List Files of Type:"},
            {"Label3", "Directories:"}, {"Label5", "Drives:"},
            {"Command2", "Cancel"},
        };
        for (const auto& [name, text] : rows)
            QTest::newRow(qPrintable(QLatin1String(form) + QLatin1String(name)))
                << save << QString::fromLatin1(name) << QString::fromLatin1(text);
    }
    QTest::newRow("frmOpen Command1") << false << "Command1"
                                      << "Open";
    QTest::newRow("frmSaveAs Command1") << true << "Command1"
                                        << "Save";
    QTest::newRow("frmOpen Text1 at design") << false << "Text1"
                                             << "location.dat";
    QTest::newRow("frmSaveAs Text1 at design") << true << "Text1"
                                               << "";
}

void FileDialogsTest::captions()
{
    QFETCH(bool, save);
    QFETCH(QString, name);
    QFETCH(QString, text);
    const FileBrowserForm* form = save ? static_cast<FileBrowserForm*>(m_window->saveAsForm()) : m_window->openForm();
    QCOMPARE(form->windowTitle(), save ? QStringLiteral("Save As ...") : QStringLiteral("Open "));
    QCOMPARE(form->objectName(), save ? QStringLiteral("frmSaveAs") : QStringLiteral("frmOpen"));
    const QWidget* widget = control<QWidget>(*form, name);
    QVERIFY(widget);
    if (auto* l = qobject_cast<const QLabel*>(widget))
        QCOMPARE(l->text(), text);
    else if (auto* b = qobject_cast<const QPushButton*>(widget))
        QCOMPARE(b->text(), text);
    else
        QCOMPARE(qobject_cast<const QLineEdit*>(widget)->text(), text);
    for (const char* list : {"Drive1", "Dir1", "File1", "Combo1", "Label4"})
        QVERIFY(control<QWidget>(*form, QLatin1String(list)));
}

void FileDialogsTest::preparedAtStart()
{
    const QString here = native(m_scope->folder.path());
    const QStringList entries = {"*.txt", "*.csv", "*.*"};
    for (const FileBrowserForm* form :
         {static_cast<FileBrowserForm*>(m_window->openForm()), static_cast<FileBrowserForm*>(m_window->saveAsForm())}) {
        QStringList items;
        for (int i = 0; i < form->Combo1->count(); ++i)
            items << form->Combo1->itemText(i);
        QCOMPARE(items, entries);
        QCOMPARE(form->Dir1->path(), here);
        QCOMPARE(form->Label4->text(), here);
        QCOMPARE(form->File1->path(), here);
        QVERIFY(!form->isVisible());
        QVERIFY(!form->isModal());
    }
    QCOMPARE(m_window->openForm()->listIndex(), 1);
    QCOMPARE(m_window->openForm()->Combo1->currentText(), QStringLiteral("*.csv"));
    QCOMPARE(m_window->openForm()->File1->pattern(), QStringLiteral("*.csv"));
    QCOMPARE(listed(m_window->openForm()->File1), (QStringList{"Alpha.CSV", "zeta.csv"}));
    QCOMPARE(m_window->saveAsForm()->listIndex(), 0);
    QCOMPARE(m_window->saveAsForm()->File1->pattern(), QStringLiteral("*.txt"));
    QCOMPARE(listed(m_window->saveAsForm()->File1), QStringList{"notes.txt"});
    // Preparing the save dialog changes no name.
    QCOMPARE(S().DataName, QString());
}

void FileDialogsTest::driveListHoldsTheRoots()
{
    QStringList roots;
    for (const QFileInfo& root : QDir::drives())
        roots << native(root.absoluteFilePath());
    const DriveList* drives = m_window->openForm()->Drive1;
    QStringList items;
    for (int i = 0; i < drives->count(); ++i)
        items << drives->itemText(i);
    QCOMPARE(items, roots);
    QVERIFY(native(m_scope->folder.path()).startsWith(drives->drive()));
}

void FileDialogsTest::folderListShowsHierarchyAndSubfolders()
{
    const DirList* dirs = m_window->openForm()->Dir1;
    // From the root down to the current folder, then its subfolders, one step further in each.
    QStringList chain;
    for (QDir d(m_scope->folder.path());; d.cdUp()) {
        chain.prepend(d.absolutePath());
        if (d.isRoot())
            break;
    }
    QCOMPARE(dirs->count(), chain.size() + 2);
    for (int i = 0; i < chain.size(); ++i)
        QCOMPARE(dirs->entryPath(i), native(chain[i]));
    QCOMPARE(dirs->currentRow(), chain.size() - 1);
    QCOMPARE(dirs->item(0)->text(), native(chain[0]));
    QCOMPARE(dirs->item(chain.size() - 1)->text(), QDir(m_scope->folder.path()).dirName());
    QCOMPARE(dirs->item(chain.size())->text(), QStringLiteral("alpha"));
    QCOMPARE(dirs->item(chain.size() + 1)->text(), QStringLiteral("beta"));
    QCOMPARE(dirs->entryPath(chain.size() + 1), native(m_scope->folder.path() + QStringLiteral("/beta")));
    for (int i = 0; i < chain.size(); ++i)
        QCOMPARE(dirs->entryLevel(i), i);
    QCOMPARE(dirs->entryLevel(chain.size()), chain.size());
    QCOMPARE(dirs->entryLevel(chain.size() + 1), chain.size());
}

void FileDialogsTest::openReListsWithCsv()
{
    frmOpen* open = m_window->openForm();
    // A file made after start-up appears, because opening switches the filter away and back.
    m_scope->folder.write(QStringLiteral("new.csv"), dipCurve(10, 2));
    open->setListIndex(2); // left on "*.*" by an earlier use
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    QVERIFY(open->isVisible());
    QCOMPARE(open->listIndex(), 1);
    QCOMPARE(open->Combo1->currentText(), QStringLiteral("*.csv"));
    QCOMPARE(listed(open->File1), (QStringList{"Alpha.CSV", "new.csv", "zeta.csv"}));
    open->Command2->click();
    QVERIFY(!open->isVisible());
    // "Load File" does the same.
    m_scope->folder.write(QStringLiteral("newer.csv"), dipCurve(10, 2));
    QTest::mouseClick(control<QPushButton>(*m_window, QStringLiteral("Command9")), Qt::LeftButton);
    QVERIFY(open->isVisible());
    QCOMPARE(listed(open->File1), (QStringList{"Alpha.CSV", "new.csv", "newer.csv", "zeta.csv"}));
}

void FileDialogsTest::saveReListsWithTxt()
{
    frmSaveAs* save = m_window->saveAsForm();
    m_scope->folder.write(QStringLiteral("later.txt"), "x\n");
    m_window->findChild<QAction*>(QStringLiteral("mnuSave"))->trigger();
    QVERIFY(save->isVisible());
    QCOMPARE(save->listIndex(), 0);
    QCOMPARE(save->Combo1->currentText(), QStringLiteral("*.txt"));
    QCOMPARE(listed(save->File1), (QStringList{"later.txt", "notes.txt"}));
}

void FileDialogsTest::folderChangeFillsNameWithFirstFile()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    const int beta = rowOf(open->Dir1, QStringLiteral("beta"));
    QVERIFY(beta >= 0);
    // A single click only selects.
    QTest::mouseClick(open->Dir1->viewport(), Qt::LeftButton, {}, centreOf(open->Dir1, beta));
    QCOMPARE(open->Dir1->path(), native(m_scope->folder.path()));
    QCOMPARE(open->Text1->text(), QStringLiteral("location.dat"));
    doubleClick(open->Dir1, beta);
    const QString betaPath = native(m_scope->folder.path() + QStringLiteral("/beta"));
    QCOMPARE(open->Dir1->path(), betaPath);
    QCOMPARE(open->Label4->text(), betaPath);
    QCOMPARE(open->File1->path(), betaPath);
    QCOMPARE(listed(open->File1), (QStringList{"a1.csv", "b2.csv"}));
    QCOMPARE(open->Text1->text(), QStringLiteral("a1.csv"));
    // "Open" right after the folder change opens that first file.
    open->Command1->click();
    QCOMPARE(S().DataDir, betaPath);
    QCOMPARE(S().DataName, QStringLiteral("a1.csv"));
    QCOMPARE(S().NumOrig, rt::Integer(21));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope - a1.csv"));
}

void FileDialogsTest::folderChangeByEnter()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    open->Dir1->setCurrentRow(rowOf(open->Dir1, QStringLiteral("beta")));
    QTest::keyClick(open->Dir1, Qt::Key_Return);
    QCOMPARE(open->Dir1->path(), native(m_scope->folder.path() + QStringLiteral("/beta")));
    QCOMPARE(open->Text1->text(), QStringLiteral("a1.csv"));
    // Enter in the folder list only changes the folder: nothing is opened.
    QVERIFY(open->isVisible());
    QCOMPARE(S().DataName, QString());
    // Up again through the entry of the parent folder.
    open->Dir1->setCurrentRow(rowOf(open->Dir1, QDir(m_scope->folder.path()).dirName()));
    QTest::keyClick(open->Dir1, Qt::Key_Enter);
    QCOMPARE(open->Dir1->path(), native(m_scope->folder.path()));
    QCOMPARE(open->Text1->text(), QStringLiteral("Alpha.CSV"));
}

void FileDialogsTest::folderChangeInEmptyFolderEmptiesName()
{
    frmSaveAs* save = m_window->saveAsForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuSave"))->trigger();
    QTest::keyClicks(save->Text1, QStringLiteral("out.txt"));
    save->Dir1->setPath(m_scope->folder.path() + QStringLiteral("/alpha"));
    QCOMPARE(save->Text1->text(), QString());
    QCOMPARE(save->Label4->text(), native(m_scope->folder.path() + QStringLiteral("/alpha")));
    // In the save dialog every change of the name box is the session's name at once.
    QCOMPARE(S().DataName, QString());
}

void FileDialogsTest::allFilesPattern()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    QTest::keyClick(open->Combo1, Qt::Key_Down); // from "*.csv" to "*.*", as a user chooses it
    QCOMPARE(open->Combo1->currentText(), QStringLiteral("*.*"));
    QCOMPARE(open->File1->pattern(), QStringLiteral("*.*"));
    // Every file, also one without an extension; hidden files and folders are not files here.
    QCOMPARE(listed(open->File1), (QStringList{"Alpha.CSV", "notes.txt", "README", "zeta.csv"}));
    QTest::keyClick(open->Combo1, Qt::Key_Up);
    QCOMPARE(listed(open->File1), (QStringList{"Alpha.CSV", "zeta.csv"}));
    // The reader, not the dialog, decides whether a file is usable.
    QTest::keyClick(open->Combo1, Qt::Key_Down);
    doubleClick(open->File1, 1);
    QCOMPARE(S().DataName, QStringLiteral("notes.txt"));
    QCOMPARE(m_scope->messages.messages().size(), 1);
    QCOMPARE(S().NumOrig, rt::Integer(0));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope"));
}

void FileDialogsTest::mouseDownShowsFirstFileThenClickReplacesIt()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    QCOMPARE(listed(open->File1), (QStringList{"Alpha.CSV", "zeta.csv"}));
    QCOMPARE(open->Text1->text(), QStringLiteral("location.dat"));
    const QPoint zeta = centreOf(open->File1, 1);
    QTest::mousePress(open->File1->viewport(), Qt::LeftButton, {}, zeta);
    QCOMPARE(open->Text1->text(), QStringLiteral("Alpha.CSV"));
    QTest::mouseRelease(open->File1->viewport(), Qt::LeftButton, {}, zeta);
    QCOMPARE(open->Text1->text(), QStringLiteral("zeta.csv"));
    // Any button: a right press shows the first file too, and no click follows it.
    QTest::mousePress(open->File1->viewport(), Qt::RightButton, {}, zeta);
    QCOMPARE(open->Text1->text(), QStringLiteral("Alpha.CSV"));
    QTest::mouseRelease(open->File1->viewport(), Qt::RightButton, {}, zeta);
    QCOMPARE(open->Text1->text(), QStringLiteral("Alpha.CSV"));
    // The save dialog has no such step.
    frmSaveAs* save = m_window->saveAsForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuSave"))->trigger();
    save->File1->setPattern(QStringLiteral("*.*"));
    const QPoint notes = centreOf(save->File1, 1);
    QTest::mousePress(save->File1->viewport(), Qt::LeftButton, {}, notes);
    QCOMPARE(save->Text1->text(), QString());
    QTest::mouseRelease(save->File1->viewport(), Qt::LeftButton, {}, notes);
    QCOMPARE(save->Text1->text(), QStringLiteral("notes.txt"));
    QCOMPARE(S().DataName, QStringLiteral("notes.txt"));
}

void FileDialogsTest::keyboardSelectionNamesTheFile()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    open->File1->setCurrentRow(0);
    QTest::keyClick(open->File1, Qt::Key_Down);
    QCOMPARE(open->Text1->text(), QStringLiteral("zeta.csv"));
    // Enter on a file opens it, as a double-click does.
    QTest::keyClick(open->File1, Qt::Key_Return);
    QCOMPARE(S().DataName, QStringLiteral("zeta.csv"));
    QCOMPARE(S().NumOrig, rt::Integer(20));
    QVERIFY(!open->isVisible());
}

void FileDialogsTest::doubleClickOpens()
{
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    for (int k = 1; k <= 12; ++k)
        m_window->setText(k, QStringLiteral("old"));
    doubleClick(open->File1, 0);
    QCOMPARE(S().DataName, QStringLiteral("Alpha.CSV"));
    QCOMPARE(S().DataDir, native(m_scope->folder.path()));
    QCOMPARE(S().DataPath, native(m_scope->folder.path()) + QDir::separator() + QStringLiteral("Alpha.CSV"));
    QCOMPARE(S().NumOrig, rt::Integer(15));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope - Alpha.CSV"));
    QVERIFY(!open->isVisible());
    for (int k = 1; k <= 12; ++k)
        QCOMPARE(m_window->text(k), QString());
}

void FileDialogsTest::cancelOpenLeavesSessionUntouched()
{
    openThroughDialog(*m_window, m_scope->folder.path(), QStringLiteral("zeta.csv"));
    m_window->setText(1, QStringLiteral("0.51234"));
    const SessionFiles before = sessionFiles();
    frmOpen* open = m_window->openForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    open->Dir1->setPath(m_scope->folder.path() + QStringLiteral("/beta"));
    open->Text1->clear();
    QTest::keyClicks(open->Text1, QStringLiteral("b2.csv"));
    QTest::mouseClick(open->Command2, Qt::LeftButton);
    QVERIFY(!open->isVisible());
    QVERIFY(sessionFiles() == before);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope - zeta.csv"));
    QCOMPARE(m_window->text(1), QStringLiteral("0.51234"));
    // Escape cancels as well.
    m_window->findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    QTest::keyClick(open, Qt::Key_Escape);
    QVERIFY(!open->isVisible());
    QVERIFY(sessionFiles() == before);
}

void FileDialogsTest::cancelSaveAfterTypingKeepsName()
{
    openThroughDialog(*m_window, m_scope->folder.path(), QStringLiteral("zeta.csv"));
    const SessionFiles before = sessionFiles();
    frmSaveAs* save = m_window->saveAsForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuSave"))->trigger();
    save->Text1->clear();
    QTest::keyClicks(save->Text1, QStringLiteral("results"));
    QCOMPARE(S().DataName, QStringLiteral("results"));
    QTest::mouseClick(save->Command2, Qt::LeftButton);
    QVERIFY(!save->isVisible());
    // Deliberately kept: the abandoned name has replaced DataName; nothing else changed.
    QCOMPARE(S().DataName, QStringLiteral("results"));
    QCOMPARE(S().DataDir, before.dir);
    QCOMPARE(S().DataPath, before.path);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope - zeta.csv"));
}

void FileDialogsTest::saveRecordsFolderAndNameOnly()
{
    openThroughDialog(*m_window, m_scope->folder.path(), QStringLiteral("zeta.csv"));
    const SessionFiles before = sessionFiles();
    const QStringList filesBefore = QDir(m_scope->folder.path() + QStringLiteral("/beta")).entryList(QDir::Files);
    frmSaveAs* save = m_window->saveAsForm();
    m_window->findChild<QAction*>(QStringLiteral("mnuSave"))->trigger();
    save->Dir1->setPath(m_scope->folder.path() + QStringLiteral("/beta"));
    QCOMPARE(save->Text1->text(), QStringLiteral("report.txt"));
    save->Text1->clear();
    QTest::keyClicks(save->Text1, QStringLiteral("minima"));
    QTest::keyClick(save->Text1, Qt::Key_Return); // the accept button is the default one
    QVERIFY(!save->isVisible());
    QCOMPARE(S().DataDir, native(m_scope->folder.path() + QStringLiteral("/beta")));
    QCOMPARE(S().DataName, QStringLiteral("minima")); // no extension added
    QCOMPARE(S().DataPath, before.path);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Dipscope - zeta.csv"));
    QCOMPARE(QDir(m_scope->folder.path() + QStringLiteral("/beta")).entryList(QDir::Files), filesBefore);
}

void FileDialogsTest::missingFolderRaises()
{
    DIP_EXPECT_RUNTIME_ERROR(m_window->openForm()->Dir1->setPath(m_scope->folder.path() + QStringLiteral("/gone")), 76);
    QCOMPARE(m_window->openForm()->Dir1->path(), native(m_scope->folder.path()));
}

void FileDialogsTest::resize_data()
{
    QTest::addColumn<bool>("save");
    QTest::addColumn<int>("width"); // asked for, twips
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("expectedWidth");
    QTest::addColumn<int>("expectedHeight");
    for (bool save : {false, true}) {
        const QString form = save ? QStringLiteral("save ") : QStringLiteral("open ");
        QTest::newRow(qPrintable(form + QStringLiteral("too small"))) << save << 1500 << 1500 << 6525 << 3540;
        QTest::newRow(qPrintable(form + QStringLiteral("too narrow"))) << save << 3000 << 6000 << 6525 << 6000;
        QTest::newRow(qPrintable(form + QStringLiteral("smallest"))) << save << 6525 << 3540 << 6525 << 3540;
        QTest::newRow(qPrintable(form + QStringLiteral("larger"))) << save << 10500 << 7500 << 10500 << 7500;
    }
}

void FileDialogsTest::resize()
{
    QFETCH(bool, save);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, expectedWidth);
    QFETCH(int, expectedHeight);
    FileBrowserForm* form = save ? static_cast<FileBrowserForm*>(m_window->saveAsForm()) : m_window->openForm();
    form->show();
    form->resize(toPixels(width), toPixels(height));
    QCOMPARE(toTwips(form->width()), expectedWidth);
    QCOMPARE(toTwips(form->height()), expectedHeight);

    auto twips = [](const QWidget* w) {
        return QRect(toTwips(w->x()), toTwips(w->y()), toTwips(w->width()), toTwips(w->height()));
    };
    // Both lists are the form height less 2100 high; the lower labels sit 990 below that height.
    QCOMPARE(twips(form->File1).height(), expectedHeight - 2100);
    QCOMPARE(twips(form->Dir1).height(), expectedHeight - 2100);
    QCOMPARE(twips(form->Label2).top(), expectedHeight - 2100 + 990);
    QCOMPARE(twips(form->Label5).top(), expectedHeight - 2100 + 990);
    QVERIFY(twips(form->Combo1).top() >= twips(form->Label2).bottom());
    QVERIFY(twips(form->Drive1).top() >= twips(form->Label5).bottom());
    // The boxes and lists widen with the form; the right-hand column follows the name box.
    const int extra = expectedWidth - 6525;
    QCOMPARE(twips(form->Text1).width() + twips(form->Dir1).width(), 2895 + 1935 + extra);
    QCOMPARE(twips(form->File1).width(), twips(form->Text1).width());
    QCOMPARE(twips(form->Combo1).width(), twips(form->Text1).width());
    QCOMPARE(twips(form->Drive1).width(), twips(form->Dir1).width());
    const int afterText = twips(form->Text1).left() + twips(form->Text1).width();
    for (const QWidget* right :
         {static_cast<QWidget*>(form->Label3), static_cast<QWidget*>(form->Label4), static_cast<QWidget*>(form->Dir1),
          static_cast<QWidget*>(form->Label5), static_cast<QWidget*>(form->Drive1)})
        QCOMPARE(twips(right).left(), afterText + 240);
    // Everything stays inside the form.
    for (const QWidget* w : form->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (w->isVisible())
            QVERIFY2(form->rect().contains(w->geometry()), qPrintable(w->objectName()));
}

QTEST_MAIN(FileDialogsTest)
#include "tst_filedialogs.moc"
