#include "mainwindow/preview/manual_cut_overlay.h"

#include "mainwindow/look/window_text.h"
#include "video/gr_view.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>

namespace {

constexpr double kHandleSide = 10;  ///< drawn, pixels
constexpr double kHandleReach = 10; ///< how far from a handle's middle the mouse takes it, pixels
constexpr double kGraspMin = 8;     ///< of the middle, which moves the selection, pixels
const QColor kDimmed(0, 0, 0, 120);

struct PlacedHandle
{
    CutHandle handle;
    double x, y; ///< place on the rectangle, 0 to 1
};

/// Corners first: where handles of a small rectangle overlap, corners are the more useful ones.
constexpr std::array<PlacedHandle, 8> kHandles{{{CutHandle::BottomRight, 1, 1},
                                                {CutHandle::TopLeft, 0, 0},
                                                {CutHandle::TopRight, 1, 0},
                                                {CutHandle::BottomLeft, 0, 1},
                                                {CutHandle::Top, 0.5, 0},
                                                {CutHandle::Right, 1, 0.5},
                                                {CutHandle::Bottom, 0.5, 1},
                                                {CutHandle::Left, 0, 0.5}}};

QPointF middleOf(const PlacedHandle &placed, const QRectF &rect)
{
    return {rect.x() + rect.width() * placed.x, rect.y() + rect.height() * placed.y};
}

// The part of the selection's middle that moves it, whatever handles are near: of a tiny one the
// handles are taken from outside.
QRectF graspOf(const QRectF &rect)
{
    const auto side = [](double length) { return std::max(length / 3, kGraspMin); };
    QRectF grasp(0, 0, side(rect.width()), side(rect.height()));
    grasp.moveCenter(rect.center());
    return grasp;
}

Qt::CursorShape cursorFor(CutHandle handle)
{
    switch (handle) {
    case CutHandle::TopLeft:
    case CutHandle::BottomRight:
        return Qt::SizeFDiagCursor;
    case CutHandle::TopRight:
    case CutHandle::BottomLeft:
        return Qt::SizeBDiagCursor;
    case CutHandle::Top:
    case CutHandle::Bottom:
        return Qt::SizeVerCursor;
    case CutHandle::Left:
    case CutHandle::Right:
        return Qt::SizeHorCursor;
    case CutHandle::Inside:
        return Qt::SizeAllCursor;
    default:
        return Qt::ArrowCursor;
    }
}

void drawThirds(QPainter &painter, const QRectF &rect)
{
    painter.setPen(QPen(QColor(255, 255, 255, 110), 1));
    for (int i = 1; i < 3; ++i) {
        const double x = rect.x() + rect.width() * i / 3;
        const double y = rect.y() + rect.height() * i / 3;
        painter.drawLine(QPointF(x, rect.top()), QPointF(x, rect.bottom()));
        painter.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y));
    }
}

} // namespace

ManualCutOverlay::ManualCutOverlay(QWidget *parent)
    : QWidget(parent)
{
    if (!parent) {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
    }
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    describe();
}

void ManualCutOverlay::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        describe();
}

void ManualCutOverlay::describe()
{
    setAccessibleName(WindowText::tr("Manual crop"));
    setAccessibleDescription(
        WindowText::tr("Drag the frame or its handles. Arrow keys move it by one pixel, Shift and "
                       "arrow keys change its size."));
}

void ManualCutOverlay::follow(Gr_View *view)
{
    if (m_view)
        disconnect(m_view, nullptr, this, nullptr);
    m_view = view;
    const auto takePicture = [this] { setPicture(m_view->paintedPicture()); };
    connect(view, &Gr_View::showRectChanged, this, takePicture);
    takePicture();
}

void ManualCutOverlay::setPicture(const ShownPicture &picture)
{
    const QRect before = frameRect();
    m_held = CutHandle::None; // a drag cannot go on when the picture moves under it
    m_geometry.setPicture(picture);
    announce(before);
    update();
}

void ManualCutOverlay::setFrameRect(const QRect &rect)
{
    const QRect before = frameRect();
    m_geometry.setRect(rect);
    announce(before);
}

void ManualCutOverlay::reset()
{
    const QRect before = frameRect();
    m_geometry.selectDefault();
    announce(before);
}

void ManualCutOverlay::announce(const QRect &before)
{
    if (before == frameRect())
        return;
    update();
    emit rectChanged(frameRect());
}

bool ManualCutOverlay::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    QPoint step;
    switch (key) {
    case Qt::Key_Left:
        step = {-1, 0};
        break;
    case Qt::Key_Right:
        step = {1, 0};
        break;
    case Qt::Key_Up:
        step = {0, -1};
        break;
    case Qt::Key_Down:
        step = {0, 1};
        break;
    default:
        return false;
    }
    const Qt::KeyboardModifiers chosen = modifiers & ~Qt::KeypadModifier;
    if (m_geometry.isEmpty() || (chosen != Qt::NoModifier && chosen != Qt::ShiftModifier))
        return false;
    const QRect before = frameRect();
    if (chosen == Qt::ShiftModifier)
        m_geometry.growBy(step.x(), step.y());
    else
        m_geometry.moveBy(step.x(), step.y());
    announce(before);
    return true;
}

CutHandle ManualCutOverlay::handleAt(const QPointF &position) const
{
    if (m_geometry.isEmpty())
        return CutHandle::None;
    const QRectF rect = m_geometry.screenRect();
    if (graspOf(rect).contains(position))
        return CutHandle::Inside;
    for (const PlacedHandle &placed : kHandles) {
        const QPointF distance = position - middleOf(placed, rect);
        if (std::abs(distance.x()) <= kHandleReach && std::abs(distance.y()) <= kHandleReach)
            return placed.handle;
    }
    return rect.contains(position) ? CutHandle::Inside : CutHandle::None;
}

void ManualCutOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF selected = m_geometry.screenRect();
    QPainterPath outside;
    outside.addRect(rect());
    outside.addRect(selected);
    painter.fillPath(outside, kDimmed);
    if (selected.isEmpty())
        return;
    if (!parentWidget()) // a window gets no mouse where it is fully transparent
        painter.fillRect(selected, QColor(0, 0, 0, 1));
    if (m_held != CutHandle::None)
        drawThirds(painter, selected);

    // White between two dark lines stands out on paper as well as on a dark desk.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0, 0, 0, 90), 4));
    painter.drawRect(selected);
    painter.setPen(QPen(Qt::white, 2));
    painter.drawRect(selected);

    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::white);
    for (const PlacedHandle &placed : kHandles) {
        QRectF handle(0, 0, kHandleSide, kHandleSide);
        handle.moveCenter(middleOf(placed, selected));
        painter.drawRoundedRect(handle, 2.5, 2.5);
    }
}

void ManualCutOverlay::mousePressEvent(QMouseEvent *event)
{
    m_held = event->button() == Qt::LeftButton ? handleAt(event->localPos()) : CutHandle::None;
    m_isPanning = m_view && event->button() == Qt::LeftButton && m_held == CutHandle::None;
    m_panned = event->pos();
    m_pressed = event->localPos();
    m_startRect = frameRect();
    update();
}

void ManualCutOverlay::mouseMoveEvent(QMouseEvent *event)
{
    if (m_isPanning) {
        m_view->panBy(event->pos() - m_panned);
        m_panned = event->pos();
        return;
    }
    if (m_held == CutHandle::None) {
        setCursor(cursorFor(handleAt(event->localPos())));
        return;
    }
    const QRect before = frameRect();
    m_geometry.drag(m_startRect, m_held, event->localPos() - m_pressed);
    announce(before);
}

void ManualCutOverlay::mouseReleaseEvent(QMouseEvent *)
{
    m_held = CutHandle::None;
    m_isPanning = false;
    update();
}

void ManualCutOverlay::wheelEvent(QWheelEvent *event)
{
    if (!m_view)
        return;
    const QPointF position = m_view->viewport()->mapFromGlobal(event->globalPosition().toPoint());
    QWheelEvent passed(position, event->globalPosition(), event->pixelDelta(), event->angleDelta(),
                       event->buttons(), event->modifiers(), event->phase(), event->inverted());
    QCoreApplication::sendEvent(m_view->viewport(), &passed);
    event->accept();
}

void ManualCutOverlay::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(event->key(), event->modifiers()))
        QWidget::keyPressEvent(event);
}
