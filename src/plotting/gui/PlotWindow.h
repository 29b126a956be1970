// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The base of every plot window (the light-curve editor and the method windows): a window with
// the File menu ("Print Setup ...", "Print", separator, "Exit") over a drawing surface in
// twips, 15 twips to a logical pixel, on which the controls sit at fixed twip positions.
//
// The drawing model is that of a form with a persistent picture: what is drawn stays until
// cls() (a repaint, a hide and show or an overlapping window never lose it), there is a current
// drawing colour and a pen position, and drawing a line again in white erases it by
// overpainting. The picture is kept at the screen's device pixel ratio, so it stays crisp on
// high-DPI screens.
//
// The form size W x H that the layout rules use (formWidth(), formHeight()) is the size of the
// drawing surface, the window's client area below its menu bar, in twips. Form coordinates start
// at its top left corner and grow rightward and downward. Window placements (WinPos) are the
// window's left, top, width and height, in twips.

#include "plotting/FormPort.h"
#include "runtime/Twips.h"

#include <QImage>
#include <QMainWindow>
#include <QPointF>
#include <QRect>

class QAction;
class QMenu;
class QPainter;

namespace dip {

class PlotSurface;

class PlotWindow : public QMainWindow, public FormPort {
    Q_OBJECT
public:
    // The least room a plot box keeps when the window is made small (twips): enough for a curve
    // and the axes' numbers.
    static constexpr double MinPlotWidth = 3000;
    static constexpr double MinPlotHeight = 1500;
    // The room kept right of the rightmost control, as left of the leftmost.
    static constexpr double ControlMargin = 240;
    // The least form width and height for a plot box with the standard margins (left 500, right
    // W - 415, top 242, bottom H - 1850: the light-curve window's and the method windows').
    static constexpr double StandardMinimumWidth = 500 + MinPlotWidth + 415;
    static constexpr double StandardMinimumHeight = 242 + MinPlotHeight + 1850;

    // winPosLine: the line of WinPos (1..7) that holds this window's placement.
    explicit PlotWindow(int winPosLine, QWidget* parent = nullptr);
    ~PlotWindow() override;

    // Shows the window (modeless), loading it first when it is not loaded: on first use, and
    // again after it was closed from its title bar (which unloads it).
    void showForm();
    bool isLoaded() const { return m_loaded; }

    // Canvas
    void cls() override;
    void setForeColor(Rgb colour) override;
    void clipToPlotBox() override;
    void clearClip() override;
    void line(double x1, double y1, double x2, double y2) override;
    void lineTo(double x, double y) override;
    void pset(double x, double y) override;
    void circle(double x, double y, double radius) override;
    void text(double x, double y, const QString& text) override;
    void textUp(double x, double y, const QString& text) override;
    double textWidth(const QString& text) const override;
    double textHeight() const override;
    double formWidth() const override;
    double formHeight() const override;

    // FormPort
    QString caption() const override;
    void setCaption(const QString& caption) override;
    QString controlText(const QString& name) const override;
    void setControlText(const QString& name, const QString& text) override;

    // Adds a control on the drawing surface with objectName name at a twip position; a
    // non-positive width or height keeps the control's own size.
    QWidget* addControl(const QString& name, QWidget* control, double left, double top, double width = 0,
                        double height = 0);
    // Moves the named control to a twip position.
    void moveControl(const QString& name, double left, double top);
    template <typename T>
    T* control(const QString& name) const
    {
        return findChild<T*>(name);
    }

    // The picture as drawn, in device pixels, and the colour at a form position in twips.
    QImage picture() const;
    QColor pixelAt(double x, double y) const;
    // The surface, for mouse events in tests.
    QWidget* surface() const;
    // The client area below the menu bar, in logical pixels.
    QSize clientSize() const;
    // The client area drawn afresh on painter, whose coordinates are the client area's logical
    // pixels: the drawing since the last cls() from its twips, then the controls on top. On a
    // printer's painter it comes out at the printer's resolution, not as the screen's pixels.
    void renderClientArea(QPainter& painter) const;
    // Mouse pointer: 1 arrow, 2 cross-hair.
    void setMousePointer(int code);
    int mousePointer() const { return m_pointer; }

    // Twips of the drawing surface for a point in its logical pixels, and back.
    static QPointF toTwips(const QPointF& pixels);
    static QPointF toPixels(double x, double y);

    // The window the plot windows open beside when no placement of theirs is stored (the main
    // window); nullptr: none.
    static void setPlacementAnchor(QWidget* anchor);
    // Where a window of frame size `frame` opens when no placement is stored: beside the anchor's
    // frame, on the right when the available area has room, else on the left, else as far right
    // as the area allows (away from the anchor's buttons on its left); the n-th place of the
    // cascade (from 0) is step pixels further down and away from the anchor. In screen pixels. A
    // window takes the first place that no other plot window on the screen holds.
    static QPoint besideAnchor(const QRect& anchor, const QSize& frame, const QRect& available, int n, int step);

    // Presses button when Enter is pressed in the text box (both by name): the window's action
    // for that box.
    void pressOnEnter(const QString& box, const QString& button);

    // The File menu's handlers (the same for every plot window).
    void mPrint_Click();
    void mPrintSetup_Click();
    void mExit_Click();

protected:
    // Handlers of the form's events; a window overrides those it uses.
    virtual void Form_Load() {}
    virtual void Form_Resize() {}
    virtual void Form_Unload() {}
    // Button 1 left, 2 right, 4 middle; Shift 1 shift, 2 ctrl, 4 alt; X, Y in twips.
    virtual void Form_MouseDown(int button, int shift, double x, double y);
    virtual void Form_MouseMove(int button, int shift, double x, double y);

    // Places the window from its WinPos line while the window-loading flag is set, so that the
    // resize this causes is not stored back. A line without a size (nothing saved yet: zeros)
    // keeps the window's design size and opens the window beside the main window, cascaded. A
    // stored size smaller than the window's minimum opens at the minimum; the line itself keeps
    // what the user saved until the window is moved, resized or closed.
    void restorePlacement();
    // The smallest client area, in twips, at which every control is visible and clear of the
    // others and the plot box keeps room: the window cannot be made smaller.
    void setMinimumFormSize(double width, double height);
    // Stores left, top, width and height (twips, 16-bit) into the window's WinPos line.
    void storePlacement();
    bool isLoading() const { return m_loading; }
    // Design size in twips, used until a placement has been saved.
    void setDesignSize(double width, double height);

    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    friend class PlotSurface;
    void surfaceMouseDown(int button, int shift, const QPointF& pixels);
    void surfaceMouseMove(int button, int shift, const QPointF& pixels);
    // Text with its top left corner at (x, y), turned by angle degrees (clockwise).
    void drawText(double x, double y, double angle, const QString& text);

    int m_winPosLine;
    PlotSurface* m_surface;
    QMenu* m_fileMenu = nullptr;
    bool m_loaded = false;
    bool m_loading = false;
    int m_pointer = 1;
    double m_designWidth = 9600;
    double m_designHeight = 7200;
};

} // namespace dip
