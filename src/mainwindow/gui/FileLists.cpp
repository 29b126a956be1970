// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/FileLists.h"

#include "runtime/RuntimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyledItemDelegate>

namespace dip {

namespace {

QString cleanAbsolute(const QString& path) { return QDir::cleanPath(QFileInfo(path).absoluteFilePath()); }

bool isEnter(const QKeyEvent* event) { return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter; }

constexpr int levelRole = Qt::UserRole + 1;
constexpr int indentPerLevel = 12; // pixels

// Draws each folder entry, icon and name, indented by its depth in the hierarchy.
class LevelDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem shifted(option);
        shifted.rect.setLeft(option.rect.left() + indentPerLevel * index.data(levelRole).toInt());
        QStyledItemDelegate::paint(painter, shifted, index);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(indentPerLevel * index.data(levelRole).toInt(), 0);
    }
};

} // namespace

DriveList::DriveList(QWidget* parent) : QComboBox(parent)
{
    for (const QFileInfo& root : QDir::drives())
        addItem(QDir::toNativeSeparators(root.absoluteFilePath()));
    connect(this, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        if (index == m_shown)
            return;
        m_shown = index;
        Q_EMIT changed();
    });
}

void DriveList::showDriveOf(const QString& path)
{
    // The drive is the longest root that the folder lies under.
    const QString folder = QDir::toNativeSeparators(cleanAbsolute(path));
    int best = -1;
    for (int i = 0; i < count(); ++i)
        if (folder.startsWith(itemText(i), Qt::CaseInsensitive) &&
            (best < 0 || itemText(i).size() > itemText(best).size()))
            best = i;
    m_shown = best;
    setCurrentIndex(best);
}

DirList::DirList(QWidget* parent) : QListWidget(parent)
{
    setItemDelegate(new LevelDelegate(this));
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { setPath(item->data(Qt::UserRole).toString()); });
}

QString DirList::path() const { return QDir::toNativeSeparators(m_path); }

QString DirList::entryPath(int row) const
{
    const QListWidgetItem* it = item(row);
    return it ? QDir::toNativeSeparators(it->data(Qt::UserRole).toString()) : QString();
}

int DirList::entryLevel(int row) const
{
    const QListWidgetItem* it = item(row);
    return it ? it->data(levelRole).toInt() : -1;
}

void DirList::showPath(const QString& path)
{
    m_path = cleanAbsolute(path);
    relist();
}

void DirList::setPath(const QString& path)
{
    const QString folder = cleanAbsolute(path);
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable())
        rt::raise(76);
    if (folder == m_path)
        return;
    m_path = folder;
    relist();
    Q_EMIT changed();
}

void DirList::relist()
{
    clear();
    // The folders from the root down to the current one, each indented one step further ...
    QStringList chain;
    QDir dir(m_path);
    while (!dir.isRoot()) {
        chain.prepend(dir.absolutePath());
        if (!dir.cdUp())
            break;
    }
    chain.prepend(dir.absolutePath());
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);
    auto add = [this](const QIcon& icon, int level, const QString& name, const QString& full) {
        auto* entry = new QListWidgetItem(icon, name, this);
        entry->setData(Qt::UserRole, full);
        entry->setData(levelRole, level);
    };
    for (int level = 0; level < chain.size(); ++level) {
        const QString& full = chain[level];
        add(open, level, level == 0 ? QDir::toNativeSeparators(full) : QFileInfo(full).fileName(), full);
    }
    setCurrentRow(static_cast<int>(chain.size()) - 1);
    // ... then its subfolders one step further in.
    const QFileInfoList subfolders =
        QDir(m_path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& sub : subfolders)
        add(closed, static_cast<int>(chain.size()), sub.fileName(), sub.absoluteFilePath());
}

void DirList::keyPressEvent(QKeyEvent* event)
{
    if (isEnter(event)) {
        if (currentItem())
            setPath(currentItem()->data(Qt::UserRole).toString());
        event->accept(); // Enter here changes the folder and never presses the dialog's button
        return;
    }
    QListWidget::keyPressEvent(event);
}

FileList::FileList(QWidget* parent) : QListWidget(parent)
{
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { Q_EMIT entryClicked(item->text()); });
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { Q_EMIT entryDoubleClicked(item->text()); });
}

QString FileList::path() const { return QDir::toNativeSeparators(m_path); }

void FileList::setPath(const QString& path)
{
    m_path = cleanAbsolute(path);
    relist();
}

void FileList::setPattern(const QString& pattern)
{
    m_pattern = pattern;
    relist();
}

QString FileList::entry(int index) const
{
    const QListWidgetItem* it = item(index);
    return it ? it->text() : QString();
}

void FileList::relist()
{
    clear();
    if (m_path.isEmpty())
        return;
    QStringList filters;
    for (const QString& part : m_pattern.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString p = part.trimmed();
        // "*.*" means every file, also one without an extension.
        filters << (p == QLatin1String("*.*") ? QStringLiteral("*") : p);
    }
    addItems(QDir(m_path).entryList(filters, QDir::Files, QDir::Name | QDir::IgnoreCase));
}

void FileList::mousePressEvent(QMouseEvent* event)
{
    Q_EMIT mouseDown();
    QListWidget::mousePressEvent(event);
}

void FileList::keyPressEvent(QKeyEvent* event)
{
    if (isEnter(event)) {
        if (currentItem())
            Q_EMIT entryDoubleClicked(currentItem()->text());
        event->accept();
        return;
    }
    const int before = currentRow();
    QListWidget::keyPressEvent(event);
    if (currentRow() != before && currentItem())
        Q_EMIT entryClicked(currentItem()->text());
}

} // namespace dip
