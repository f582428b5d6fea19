#include "SegmentedPicker.h"

#include "AccessibleRole.h"
#include "Appearance.h"
#include "Motion.h"
#include "Segment.h"
#include "Theme.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

constexpr int regularHeight = 28;
constexpr int smallHeight = 26;
constexpr int inset = 2;
constexpr qreal segmentRadius = 5.5;
constexpr qreal wellRadius = segmentRadius + inset - 0.5;
constexpr qreal disabledOpacity = 0.45;
constexpr std::chrono::milliseconds slide{180};

QRectF between(const QRectF &start, const QRectF &end, qreal progress)
{
    const auto mix = [progress](qreal from, qreal to) { return from + (to - from) * progress; };
    return {mix(start.left(), end.left()), end.top(), mix(start.width(), end.width()), end.height()};
}

/// The segment that the chosen option stands on, with a hairline and a soft shade below it.
void paintSegment(QPainter &painter, const QRectF &box)
{
    const Theme &theme = Theme::current();
    const QPainterPath shape = continuousRoundedRect(box, segmentRadius);
    painter.fillPath(shape.translated(0, 1), theme.controlShadow);
    // The outer half of a line of 1; the segment covers the inner one.
    const bool isStressed = Appearance::shared().increasesContrast();
    painter.strokePath(shape, QPen(isStressed ? theme.border : theme.controlShadow, 1));
    painter.fillPath(shape, theme.segment);
}

/// The chosen one is the tab stop. A click leaves the keyboard where it is.
Qt::FocusPolicy policyOf(bool isChosen)
{
    return isChosen ? Qt::TabFocus : Qt::NoFocus;
}

} // namespace

SegmentedPicker::SegmentedPicker(const QStringList &options, QWidget *parent) : QWidget(parent)
{
    Q_ASSERT(!options.isEmpty());
    setAccessibleRole(*this, QAccessible::Grouping);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (const QString &option : options) {
        auto *segment = new Segment(option, this);
        const int index = count();
        segment->setChecked(index == 0);
        segment->setFocusPolicy(policyOf(index == 0));
        // Not its click: assistive programs check it without one.
        connect(segment, &Segment::toggled, this, [this, index](bool isChecked) {
            if (isChecked && index != m_currentIndex) {
                choose(index, Qt::MouseFocusReason);
            }
        });
        m_segments.push_back(segment);
    }
    resize(sizeHint());
    placeSegments();
    repaintWithTheme(*this);
}

SegmentedPicker::~SegmentedPicker() = default;

void SegmentedPicker::setSize(Size size)
{
    m_size = size;
    updateGeometry();
}

QSize SegmentedPicker::sizeHint() const
{
    int width = 2 * inset;
    for (const Segment *segment : m_segments) {
        width += segment->sizeHint().width();
    }
    const int height = m_size == Size::Regular ? regularHeight : smallHeight;
    return {width + 2 * outset, height + 2 * outset};
}

QRectF SegmentedPicker::currentSegment() const
{
    return m_segments[static_cast<std::size_t>(m_currentIndex)]->geometry();
}

void SegmentedPicker::placeSegments()
{
    const QRect inside = well().adjusted(inset, inset, -inset, -inset);
    const int wanted = std::max(1, sizeHint().width() - 2 * outset - 2 * inset);
    int sum = 0;
    int left = inside.left();
    for (Segment *segment : m_segments) {
        // Each has its part of the width, in proportion to its label; the roundings add up to the whole.
        sum += segment->sizeHint().width();
        const int end = inside.left() + inside.width() * sum / wanted;
        const QRect place(left, inside.top(), end - left, inside.height());
        segment->setGeometry(QStyle::visualRect(layoutDirection(), inside, place));
        left = end;
    }
    m_motion.reset();
    m_drawnSegment = currentSegment();
}

void SegmentedPicker::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeSegments();
}

bool SegmentedPicker::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        placeSegments();
    }
    return QWidget::event(event);
}

void SegmentedPicker::setCurrentIndex(int index)
{
    Q_ASSERT(index >= 0 && index < count());
    const QRectF start = m_drawnSegment;
    m_currentIndex = index;
    for (int other = 0; other < count(); ++other) {
        Segment *segment = m_segments[static_cast<std::size_t>(other)];
        segment->setFocusPolicy(policyOf(other == index));
    }
    m_segments[static_cast<std::size_t>(index)]->setChecked(true);
    slideFrom(start);
}

void SegmentedPicker::slideFrom(const QRectF &start)
{
    m_motion.reset();
    m_drawnSegment = currentSegment();
    update();
    if (!isVisible() || start == m_drawnSegment) {
        return;
    }
    m_motion = std::make_unique<QObject>();
    Motion::run(*m_motion, slide, Motion::Kind::Movement, [this, start](qreal progress) {
        m_drawnSegment = between(start, currentSegment(), progress);
        update();
    });
}

void SegmentedPicker::choose(int index, Qt::FocusReason reason)
{
    index = std::clamp(index, 0, count() - 1);
    const bool isNew = index != m_currentIndex;
    setCurrentIndex(index);
    const QWidget *const focused = focusWidget();
    if (reason != Qt::MouseFocusReason || (focused != nullptr && focused->hasFocus())) {
        m_segments[static_cast<std::size_t>(index)]->setFocus(reason);
    }
    if (isNew) {
        Q_EMIT currentIndexChosen(index);
    }
}

void SegmentedPicker::keyPressEvent(QKeyEvent *event)
{
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const bool hasModifier = (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier;
    const auto chooseIf = [&](int index) {
        if (hasModifier) {
            QWidget::keyPressEvent(event);
        } else {
            choose(index, Qt::TabFocusReason);
        }
    };
    switch (event->key()) {
    case Qt::Key_Left:
        return chooseIf(m_currentIndex + (mirrored ? 1 : -1));
    case Qt::Key_Right:
        return chooseIf(m_currentIndex + (mirrored ? -1 : 1));
    case Qt::Key_Up:
        return chooseIf(m_currentIndex - 1);
    case Qt::Key_Down:
        return chooseIf(m_currentIndex + 1);
    case Qt::Key_Home:
        return chooseIf(0);
    case Qt::Key_End:
        return chooseIf(count() - 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void SegmentedPicker::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    painter.fillPath(continuousRoundedRect(well(), wellRadius), theme.well);
    paintSegment(painter, m_drawnSegment);
    painter.setOpacity(1);
    const auto hasFocus = [](const Segment *segment) { return segment->hasFocus(); };
    if (std::ranges::any_of(m_segments, hasFocus)) {
        paintFocusRing(painter, well(), wellRadius);
    }
}
