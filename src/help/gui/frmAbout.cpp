// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/gui/frmAbout.h"

#include "help/AboutTexts.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace dip {

namespace {

QPointer<frmAbout>& loadedBox()
{
    static QPointer<frmAbout> box;
    return box;
}

} // namespace

frmAbout& frmAbout::load()
{
    QPointer<frmAbout>& box = loadedBox();
    if (!box)
        box = new frmAbout;
    return *box;
}

frmAbout* frmAbout::loaded() { return loadedBox().data(); }

frmAbout::frmAbout(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowTitle(QStringLiteral("About"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);

    QLabel* product = addLabel(QStringLiteral("Label1"), about::product());
    QFont productFont(QStringLiteral("Arial"));
    productFont.setStyleHint(QFont::SansSerif); // the nearest sans-serif where there is no Arial
    productFont.setPointSize(20);
    productFont.setBold(true);
    product->setFont(productFont);

    addLabel(QStringLiteral("Label6"), about::version());
    addLabel(QStringLiteral("Label8"), about::rule());
    addLabel(QStringLiteral("Label2"), about::credits());
    addLabel(QStringLiteral("Label3"), about::licence());
    addLabel(QStringLiteral("Label4"), about::licenceTerms());
    addLabel(QStringLiteral("Label5"), about::licenceFile());
    addLabel(QStringLiteral("Label9"), about::bugReports());

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QWidget::close);
    layout->addSpacing(8);
    layout->addWidget(ok, 0, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    Form_Load();
}

QLabel* frmAbout::addLabel(const QString& name, const QString& text)
{
    auto* label = new QLabel(text, this);
    label->setObjectName(name);
    layout()->addWidget(label);
    return label;
}

void frmAbout::Form_Load()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    move(screen ? screen->geometry().topLeft() : QPoint(0, 0));
}

void frmAbout::closeEvent(QCloseEvent* event)
{
    if (loadedBox() == this)
        loadedBox() = nullptr;
    QDialog::closeEvent(event);
}

} // namespace dip
