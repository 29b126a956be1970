// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/PlotWindow.h"

#include "plotting/gui/Printing.h"
#include "runtime/Integer.h"
#include "runtime/Numeric.h"
#include "session/Session.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QStringList>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace dip {

namespace {

// The device pixels strictly inside the frame lines of a box given in the painter's coordinates,
// so that nothing clipped to them can touch the frame. On a raster (the screen's picture) a line
// one pixel wide at x falls on pixel floor(x), and the inside is the pixels between. On a page a
// line one dot wide covers x - 0.5 .. x + 0.5 and the printer's rasteriser may widen a clip by
// part of a dot, so the inside keeps a dot more from the frame there.
QRect interiorPixels(const QPainter& p, const QRectF& box)
{
    const qreal dpr = p.device() ? p.device()->devicePixelRatioF() : 1.0;
    const QRectF device = (p.combinedTransform() * QTransform::fromScale(dpr, dpr)).mapRect(box.normalized());
    const bool raster = p.paintEngine() && p.paintEngine()->type() == QPaintEngine::Raster;
    auto first = [raster](double edge) { return raster ? int(std::floor(edge)) + 1 : int(std::ceil(edge + 0.5)) + 1; };
    // The first pixel outside.
    auto end = [raster](double edge) { return raster ? int(std::floor(edge)) : int(std::floor(edge - 0.5)) - 1; };
    const int left = first(device.left());
    const int top = first(device.top());
    const int right = end(device.right());
    const int bottom = end(device.bottom());
    return QRect(left, top, std::max(0, right - left), std::max(0, bottom - top));
}

// Clips the painter to whole device pixels, whatever its coordinates; an empty rectangle clips
// everything.
void clipToPixels(QPainter& p, const QRect& pixels, Qt::ClipOperation operation)
{
    const qreal dpr = p.device() ? p.device()->devicePixelRatioF() : 1.0;
    const QTransform world = p.worldTransform();
    const QTransform view = world.inverted() * p.combinedTransform();
    p.setWorldTransform(QTransform::fromScale(1 / dpr, 1 / dpr) * view.inverted());
    p.setClipRect(pixels, operation);
    p.setWorldTransform(world);
}

} // namespace

// The drawing surface: a persistent picture in device pixels, painted as it stands.
class PlotSurface : public QWidget {
public:
    explicit PlotSurface(PlotWindow* form) : QWidget(form), m_form(form)
    {
        setMouseTracking(true);
        setAutoFillBackground(false);
    }

    QImage image;
    Rgb foreColor = colours::black;
    QPointF pen; // twips
    // The plot box (twips) that drawing is clipped to, if any.
    std::optional<QRectF> clipBox;

    // The drawing since the last cls, primitive by primitive in twips, so that it can be drawn
    // again at any resolution (a printer's) rather than scaled up from the screen's pixels.
    struct Primitive {
        enum Kind : unsigned char { Line, Point, Circle, Text, Clip, NoClip } kind;
        Rgb colour;
        // Line: x1, y1, x2, y2; Point: x, y; Circle: x, y, radius; Text: x, y, angle;
        // Clip: the box's left, top, right, bottom.
        double a, b, c, d;
        int text; // Text: index into texts
    };
    std::vector<Primitive> drawing;
    QStringList texts;

    void record(Primitive::Kind kind, double a, double b, double c = 0, double d = 0, int text = -1)
    {
        drawing.push_back({kind, foreColor, a, b, c, d, text});
    }

    // The recorded drawing on painter, whose coordinates are the surface's logical pixels. Lines
    // are one device pixel wide on whatever device the painter draws, as on the screen.
    void replay(QPainter& p, const QFont& font) const
    {
        p.save();
        p.setRenderHint(QPainter::Antialiasing, false);
        const QTransform pixels = p.worldTransform();
        p.scale(1.0 / TwipsPerPixel, 1.0 / TwipsPerPixel);
        // The font as large as on the screen: sizes in points are taken at the picture's
        // resolution, whatever the device's.
        QFont deviceFont = font;
        if (font.pointSizeF() > 0 && p.device())
            deviceFont.setPointSizeF(font.pointSizeF() * image.logicalDpiY() / p.device()->logicalDpiY());
        std::optional<Rgb> colour;
        bool clipped = false;
        for (const Primitive& q : drawing) {
            if (q.kind == Primitive::Clip) {
                // Within whatever clip the painter came with (the client area).
                if (clipped)
                    p.restore();
                p.save();
                clipToPixels(p, interiorPixels(p, QRectF(QPointF(q.a, q.b), QPointF(q.c, q.d))), Qt::IntersectClip);
                clipped = true;
                continue;
            }
            if (q.kind == Primitive::NoClip) {
                if (clipped)
                    p.restore();
                clipped = false;
                colour.reset(); // the pen went with the restored state
                continue;
            }
            if (!colour || !(*colour == q.colour)) {
                QPen pen(QColor(q.colour.r, q.colour.g, q.colour.b));
                pen.setCosmetic(true);
                pen.setWidthF(1.0);
                p.setPen(pen);
                colour = q.colour;
            }
            switch (q.kind) {
            case Primitive::Line: p.drawLine(QPointF(q.a, q.b), QPointF(q.c, q.d)); break;
            case Primitive::Point: p.drawPoint(QPointF(q.a, q.b)); break;
            case Primitive::Circle: p.drawEllipse(QPointF(q.a, q.b), q.c, q.c); break;
            case Primitive::Clip:
            case Primitive::NoClip: break;
            case Primitive::Text: {
                const QTransform twips = p.worldTransform();
                p.setWorldTransform(pixels);
                p.setFont(deviceFont);
                p.translate(q.a / TwipsPerPixel, q.b / TwipsPerPixel);
                p.rotate(q.c);
                p.drawText(QRectF(QPointF(0, 0), QSizeF(4000, 200)), Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip,
                           texts[q.text]);
                p.setWorldTransform(twips);
                break;
            }
            }
        }
        if (clipped)
            p.restore();
        p.restore();
    }

    void ensureSize()
    {
        const qreal dpr = devicePixelRatioF();
        const QSize needed = (QSizeF(size()) * dpr).toSize().expandedTo(QSize(1, 1));
        if (!image.isNull() && image.size().width() >= needed.width() && image.size().height() >= needed.height() &&
            image.devicePixelRatio() == dpr)
            return;
        finish();
        // The picture only grows, as a form's persistent picture does, so a window made
        // smaller and larger again keeps what was drawn.
        QImage grown(needed.expandedTo(image.isNull() ? QSize(1, 1) : image.size()), QImage::Format_RGB32);
        grown.setDevicePixelRatio(dpr);
        grown.fill(Qt::white);
        if (!image.isNull()) {
            QPainter p(&grown);
            p.drawImage(QPointF(0, 0), image);
        }
        image = grown;
    }

    // The painter on the picture, in twips and the current colour. It stays open between
    // primitives, since opening one per line would cost more than the line; finish() closes it
    // before the picture is shown, read or replaced.
    QPainter& painter()
    {
        if (!m_painter.isActive()) {
            ensureSize();
            m_painter.begin(&image);
            // Twips to logical pixels; the image's device pixel ratio maps those onto the device.
            m_painter.scale(1.0 / TwipsPerPixel, 1.0 / TwipsPerPixel);
            m_painter.setRenderHint(QPainter::Antialiasing, false);
            m_penColour.reset();
            if (clipBox)
                clipToPixels(m_painter, interiorPixels(m_painter, *clipBox), Qt::ReplaceClip);
        }
        if (!m_penColour || !(*m_penColour == foreColor)) {
            QPen pen(QColor(foreColor.r, foreColor.g, foreColor.b));
            pen.setCosmetic(true);
            pen.setWidthF(1.0);
            m_painter.setPen(pen);
            m_penColour = foreColor;
        }
        return m_painter;
    }

    void finish()
    {
        if (m_painter.isActive())
            m_painter.end();
    }

    void setClip(std::optional<QRectF> box)
    {
        clipBox = box;
        if (box)
            drawing.push_back({Primitive::Clip, foreColor, box->left(), box->top(), box->right(), box->bottom(), -1});
        else
            drawing.push_back({Primitive::NoClip, foreColor, 0, 0, 0, 0, -1});
        if (!m_painter.isActive())
            return;
        if (box)
            clipToPixels(m_painter, interiorPixels(m_painter, *box), Qt::ReplaceClip);
        else
            m_painter.setClipping(false);
    }

    // Asks for a repaint once for any number of primitives drawn before it comes.
    void changed()
    {
        if (!m_repaintAsked) {
            m_repaintAsked = true;
            update();
        }
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        m_repaintAsked = false;
        finish();
        ensureSize();
        QPainter p(this);
        p.drawImage(QPointF(0, 0), image);
    }
    void resizeEvent(QResizeEvent*) override { ensureSize(); }
    void mousePressEvent(QMouseEvent* e) override
    {
        m_form->surfaceMouseDown(buttonCode(e->button()), shiftCode(e->modifiers()), e->position());
    }
    void mouseMoveEvent(QMouseEvent* e) override
    {
        m_form->surfaceMouseMove(buttonsCode(e->buttons()), shiftCode(e->modifiers()), e->position());
    }

private:
    static int buttonCode(Qt::MouseButton b)
    {
        switch (b) {
        case Qt::LeftButton: return 1;
        case Qt::RightButton: return 2;
        case Qt::MiddleButton: return 4;
        default: return 0;
        }
    }
    static int buttonsCode(Qt::MouseButtons b)
    {
        return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) | (b & Qt::MiddleButton ? 4 : 0);
    }
    static int shiftCode(Qt::KeyboardModifiers m)
    {
        return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) | (m & Qt::AltModifier ? 4 : 0);
    }
    PlotWindow* m_form;
    QPainter m_painter; // after image: ends before the picture goes
    std::optional<Rgb> m_penColour;
    bool m_repaintAsked = false;
};

PlotWindow::PlotWindow(int winPosLine, QWidget* parent)
    : QMainWindow(parent), m_winPosLine(winPosLine), m_surface(new PlotSurface(this))
{
    setCentralWidget(m_surface);
    m_fileMenu = menuBar()->addMenu(QStringLiteral("File"));
    m_fileMenu->setObjectName(QStringLiteral("mFile"));
    QAction* setup = m_fileMenu->addAction(QStringLiteral("Print Setup ..."), this, [this] { mPrintSetup_Click(); });
    setup->setObjectName(QStringLiteral("mPrintSetup"));
    QAction* print = m_fileMenu->addAction(QStringLiteral("Print"), this, [this] { mPrint_Click(); });
    print->setObjectName(QStringLiteral("mPrint"));
    QAction* dash = m_fileMenu->addSeparator();
    dash->setObjectName(QStringLiteral("mDash"));
    QAction* exit = m_fileMenu->addAction(QStringLiteral("Exit"), this, [this] { mExit_Click(); });
    exit->setObjectName(QStringLiteral("mExit"));
    resize(QSizeF(m_designWidth / TwipsPerPixel, m_designHeight / TwipsPerPixel).toSize());
}

PlotWindow::~PlotWindow() = default;

void PlotWindow::showForm()
{
    if (!m_loaded) {
        m_loaded = true;
        Form_Load();
    }
    show();
    raise();
    // A hidden window gets its resize events when it is shown: the placement made on load is
    // only over now.
    m_loading = false;
}

void PlotWindow::setDesignSize(double width, double height)
{
    m_designWidth = width;
    m_designHeight = height;
    resize(QSizeF(width / TwipsPerPixel, height / TwipsPerPixel).toSize());
}

namespace {

QPointer<QWidget>& placementAnchor()
{
    static QPointer<QWidget> anchor;
    return anchor;
}

// The cascade's step (about a title bar), and how far it goes: one place for each plot window.
constexpr int CascadeStep = 30;
constexpr int MaxCascade = 6;
// Room between the anchor and a window beside it.
constexpr int BesideGap = 8;

} // namespace

void PlotWindow::setPlacementAnchor(QWidget* anchor) { placementAnchor() = anchor; }

QPoint PlotWindow::besideAnchor(const QRect& anchor, const QSize& frame, const QRect& available, int n, int step)
{
    const int shift = n * step;
    int x = anchor.right() + 1 + BesideGap + shift;
    if (x + frame.width() > available.right() + 1) {
        x = anchor.left() - BesideGap - frame.width() - shift;
        if (x < available.left())
            x = std::max(available.left(), available.right() + 1 - frame.width());
    }
    int y = anchor.top() + shift;
    if (y + frame.height() > available.bottom() + 1)
        y = available.bottom() + 1 - frame.height();
    y = std::max(y, available.top());
    return QPoint(x, y);
}

void PlotWindow::restorePlacement()
{
    const Session& s = S();
    const int line = m_winPosLine;
    const double left = s.WinPos(line, 1), top = s.WinPos(line, 2);
    const double width = s.WinPos(line, 3), height = s.WinPos(line, 4);
    m_loading = true;
    if (width > 0 && height > 0) {
        move(QPointF(left / TwipsPerPixel, top / TwipsPerPixel).toPoint());
        resize(QSizeF(width / TwipsPerPixel, height / TwipsPerPixel).toSize().expandedTo(minimumSizeHint()));
    } else {
        resize(QSizeF(m_designWidth / TwipsPerPixel, m_designHeight / TwipsPerPixel)
                   .toSize()
                   .expandedTo(minimumSizeHint()));
        if (const QWidget* anchor = placementAnchor(); anchor && anchor->isVisible()) {
            // The frame of this window is not known before it is shown; the anchor's tells how
            // much the window system adds.
            const QSize decoration = anchor->frameGeometry().size() - anchor->size();
            const QScreen* screen = anchor->screen();
            const QRect available = screen ? screen->availableGeometry() : anchor->frameGeometry();
            // The first place of the cascade that no other plot window on the screen holds.
            auto taken = [this](const QPoint& at) {
                for (QWidget* w : QApplication::topLevelWidgets())
                    if (w != this && w->isVisible() && qobject_cast<PlotWindow*>(w) && w->pos() == at)
                        return true;
                return false;
            };
            const QSize frame = size() + decoration;
            int n = 0;
            while (n < MaxCascade && taken(besideAnchor(anchor->frameGeometry(), frame, available, n, CascadeStep)))
                ++n;
            move(besideAnchor(anchor->frameGeometry(), frame, available, n, CascadeStep));
        }
    }
    if (isVisible())
        m_loading = false;
}

void PlotWindow::setMinimumFormSize(double width, double height)
{
    m_surface->setMinimumSize(qCeil(width / TwipsPerPixel), qCeil(height / TwipsPerPixel));
}

void PlotWindow::pressOnEnter(const QString& box, const QString& button)
{
    auto* edit = findChild<QLineEdit*>(box);
    auto* press = findChild<QAbstractButton*>(button);
    if (edit && press)
        connect(edit, &QLineEdit::returnPressed, press, [press] { press->click(); });
}

void PlotWindow::storePlacement()
{
    Session& s = S();
    const QRect frame = frameGeometry();
    s.WinPos(m_winPosLine, 1) = rt::CInt(frame.x() * TwipsPerPixel);
    s.WinPos(m_winPosLine, 2) = rt::CInt(frame.y() * TwipsPerPixel);
    s.WinPos(m_winPosLine, 3) = rt::CInt(width() * TwipsPerPixel);
    s.WinPos(m_winPosLine, 4) = rt::CInt(height() * TwipsPerPixel);
}

void PlotWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    m_surface->ensureSize();
    if (m_loading || !m_loaded)
        return;
    storePlacement();
    Form_Resize();
}

void PlotWindow::closeEvent(QCloseEvent* event)
{
    // Closing from the title bar unloads the window: the next showForm loads it again.
    storePlacement();
    Form_Unload();
    m_loaded = false;
    event->accept();
}

void PlotWindow::cls()
{
    m_surface->finish();
    m_surface->ensureSize();
    m_surface->image.fill(Qt::white);
    m_surface->drawing.clear();
    m_surface->texts.clear();
    m_surface->clipBox.reset();
    m_surface->pen = QPointF(0, 0);
    m_surface->changed();
}

void PlotWindow::setForeColor(Rgb colour) { m_surface->foreColor = colour; }

void PlotWindow::clipToPlotBox()
{
    const PlotTransform& box = transform();
    m_surface->setClip(QRectF(QPointF(box.PlotLeft, box.PlotTop), QPointF(box.PlotRight, box.PlotBottom)));
}

void PlotWindow::clearClip()
{
    if (m_surface->clipBox)
        m_surface->setClip(std::nullopt);
}

void PlotWindow::line(double x1, double y1, double x2, double y2)
{
    m_surface->painter().drawLine(QPointF(x1, y1), QPointF(x2, y2));
    m_surface->record(PlotSurface::Primitive::Line, x1, y1, x2, y2);
    m_surface->pen = QPointF(x2, y2);
    m_surface->changed();
}

void PlotWindow::lineTo(double x, double y) { line(m_surface->pen.x(), m_surface->pen.y(), x, y); }

void PlotWindow::pset(double x, double y)
{
    m_surface->painter().drawPoint(QPointF(x, y));
    m_surface->record(PlotSurface::Primitive::Point, x, y);
    m_surface->pen = QPointF(x, y);
    m_surface->changed();
}

void PlotWindow::circle(double x, double y, double radius)
{
    m_surface->painter().drawEllipse(QPointF(x, y), radius, radius);
    m_surface->record(PlotSurface::Primitive::Circle, x, y, radius);
    m_surface->pen = QPointF(x, y);
    m_surface->changed();
}

void PlotWindow::text(double x, double y, const QString& text) { drawText(x, y, 0, text); }

void PlotWindow::textUp(double x, double y, const QString& text) { drawText(x, y, -90, text); }

void PlotWindow::drawText(double x, double y, double angle, const QString& text)
{
    QPainter& p = m_surface->painter();
    // Text is laid out in pixels so that the font keeps its size.
    p.save();
    p.resetTransform();
    p.setFont(font());
    p.translate(toPixels(x, y));
    p.rotate(angle);
    p.drawText(QRectF(QPointF(0, 0), QSizeF(4000, 200)), Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, text);
    p.restore();
    m_surface->texts << text;
    m_surface->record(PlotSurface::Primitive::Text, x, y, angle, 0, int(m_surface->texts.size() - 1));
    m_surface->changed();
}

double PlotWindow::textWidth(const QString& text) const
{
    return QFontMetricsF(font()).horizontalAdvance(text) * TwipsPerPixel;
}

double PlotWindow::textHeight() const { return QFontMetricsF(font()).height() * TwipsPerPixel; }

double PlotWindow::formWidth() const { return m_surface->width() * TwipsPerPixel; }

double PlotWindow::formHeight() const { return m_surface->height() * TwipsPerPixel; }

QString PlotWindow::caption() const { return windowTitle(); }

void PlotWindow::setCaption(const QString& caption) { setWindowTitle(caption); }

QString PlotWindow::controlText(const QString& name) const
{
    QObject* c = findChild<QObject*>(name);
    if (auto* label = qobject_cast<QLabel*>(c))
        return label->text();
    if (auto* edit = qobject_cast<QLineEdit*>(c))
        return edit->text();
    if (auto* button = qobject_cast<QAbstractButton*>(c))
        return button->text();
    return QString();
}

void PlotWindow::setControlText(const QString& name, const QString& text)
{
    QObject* c = findChild<QObject*>(name);
    if (auto* label = qobject_cast<QLabel*>(c))
        label->setText(text);
    else if (auto* edit = qobject_cast<QLineEdit*>(c))
        edit->setText(text);
    else if (auto* button = qobject_cast<QAbstractButton*>(c))
        button->setText(text);
}

QWidget* PlotWindow::addControl(const QString& name, QWidget* control, double left, double top, double width,
                                double height)
{
    control->setParent(m_surface);
    control->setObjectName(name);
    if (width > 0 && height > 0)
        control->resize(QSizeF(width / TwipsPerPixel, height / TwipsPerPixel).toSize());
    else
        control->adjustSize();
    control->move(toPixels(left, top).toPoint());
    control->show();
    return control;
}

void PlotWindow::moveControl(const QString& name, double left, double top)
{
    if (QWidget* c = m_surface->findChild<QWidget*>(name))
        c->move(toPixels(left, top).toPoint());
}

QImage PlotWindow::picture() const
{
    m_surface->finish();
    m_surface->ensureSize();
    return m_surface->image;
}

QColor PlotWindow::pixelAt(double x, double y) const
{
    const QImage img = picture();
    const qreal dpr = img.devicePixelRatio();
    const QPoint p = (toPixels(x, y) * dpr).toPoint();
    if (!img.rect().contains(p))
        return QColor();
    return img.pixelColor(p);
}

QWidget* PlotWindow::surface() const { return m_surface; }

QSize PlotWindow::clientSize() const { return m_surface->size(); }

void PlotWindow::renderClientArea(QPainter& painter) const
{
    m_surface->finish();
    const QRectF area(QPointF(0, 0), QSizeF(m_surface->size()));
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    painter.fillRect(area, Qt::white);
    m_surface->replay(painter, font());
    painter.restore();
    // The controls on top, each drawn by its own style at the painter's resolution.
    const QList<QWidget*> controls = m_surface->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* control : controls) {
        if (control->isVisibleTo(m_surface) && !control->isWindow())
            control->render(&painter, control->pos(), QRegion(), QWidget::DrawChildren);
    }
}

void PlotWindow::setMousePointer(int code)
{
    m_pointer = code;
    m_surface->setCursor(code == 2 ? Qt::CrossCursor : Qt::ArrowCursor);
}

QPointF PlotWindow::toTwips(const QPointF& pixels) { return pixels * TwipsPerPixel; }

QPointF PlotWindow::toPixels(double x, double y) { return QPointF(x / TwipsPerPixel, y / TwipsPerPixel); }

void PlotWindow::mPrint_Click() { PrintForm(this); }

void PlotWindow::mPrintSetup_Click() { PrintSetup(this); }

void PlotWindow::mExit_Click() { hide(); }

void PlotWindow::Form_MouseDown(int, int, double, double) {}

void PlotWindow::Form_MouseMove(int, int, double, double) {}

void PlotWindow::surfaceMouseDown(int button, int shift, const QPointF& pixels)
{
    const QPointF t = toTwips(pixels);
    Form_MouseDown(button, shift, t.x(), t.y());
}

void PlotWindow::surfaceMouseMove(int button, int shift, const QPointF& pixels)
{
    const QPointF t = toTwips(pixels);
    Form_MouseMove(button, shift, t.x(), t.y());
}

} // namespace dip
