#include "ScrollArea.h"

#include "SlimScrollBar.h"

#include <QEvent>

ScrollArea::ScrollArea(QWidget *parent) : QScrollArea(parent), m_bar(new SlimScrollBar(this))
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);

    const QScrollBar *real = verticalScrollBar();
    connect(real, &QScrollBar::rangeChanged, this, &ScrollArea::takeRange);
    connect(real, &QScrollBar::valueChanged, m_bar, &QScrollBar::setValue);
    connect(m_bar, &QScrollBar::valueChanged, real, &QScrollBar::setValue);
    // A hidden bar would still be scrolled to what has the focus.
    QScrollBar *across = horizontalScrollBar();
    connect(across, &QScrollBar::rangeChanged, across, [across] { across->setRange(0, 0); });
}

void ScrollArea::setWidget(QWidget *contents)
{
    QScrollArea::setWidget(contents);
    contents->setAutoFillBackground(false);
}

void ScrollArea::setBarMargins(int top, int bottom)
{
    m_topMargin = top;
    m_bottomMargin = bottom;
    placeBar();
}

void ScrollArea::takeRange()
{
    const QScrollBar *real = verticalScrollBar();
    m_bar->setPageStep(real->pageStep());
    m_bar->setSingleStep(real->singleStep());
    m_bar->setRange(real->minimum(), real->maximum());
    m_bar->setValue(real->value());
}

void ScrollArea::placeBar()
{
    const int left = layoutDirection() == Qt::RightToLeft ? 0 : width() - SlimScrollBar::breadth;
    m_bar->setGeometry(left, m_topMargin, SlimScrollBar::breadth, height() - m_topMargin - m_bottomMargin);
    m_bar->raise();
}

bool ScrollArea::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        placeBar();
    }
    return QScrollArea::event(event);
}

void ScrollArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    takeRange();
    placeBar();
}
