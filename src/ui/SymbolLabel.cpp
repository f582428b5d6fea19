#include "SymbolLabel.h"

#include "Symbols.h"
#include "Theme.h"

#include <QPainter>

SymbolLabel::SymbolLabel(QString symbolName, int side, TextColor color, QWidget *parent)
    : QWidget(parent),
      m_symbolName(std::move(symbolName)),
      m_color(color)
{
    setFixedSize(side, side);
    repaintWithTheme(*this);
}

void SymbolLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const qreal pixelsPerPoint = painter.deviceTransform().m11();
    painter.drawImage(0, 0, Symbols::image(m_symbolName, width(), pixelsPerPoint, color(m_color)));
}
