#include "PushButton.h"

#include "Spinner.h"
#include "Symbols.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace {

constexpr qreal disabledOpacity = 0.45;
constexpr int spinnerSide = 14;
constexpr int gapAfterMark = 6;
constexpr int plainPadding = 8;

struct Measures {
    int height;
    int padding;
    qreal radius;
    int symbolSide;
    TextStyle textStyle;
};

constexpr Measures measures(PushButton::Size size)
{
    switch (size) {
    case PushButton::Size::Regular:
        return {.height = 28, .padding = 12, .radius = 7, .symbolSide = 16, .textStyle = TextStyle::Button};
    case PushButton::Size::Small:
        return {
            .height = 26, .padding = 10, .radius = 6, .symbolSide = 14, .textStyle = TextStyle::SmallButton};
    case PushButton::Size::Compact:
        return {
            .height = 28, .padding = 12, .radius = 7, .symbolSide = 14, .textStyle = TextStyle::SmallButton};
    case PushButton::Size::Mini:
        return {.height = 22, .padding = 8, .radius = 5, .symbolSide = 12, .textStyle = TextStyle::Caption};
    }
    std::unreachable();
}

/// A soft edge of shade below the button: the shape in three places, fainter the lower it lies.
void paintShadow(QPainter &painter, const QPainterPath &shape, const QColor &color)
{
    struct Copy {
        qreal offset;
        qreal strength;
    };

    for (const Copy copy : {Copy{1, 0.6}, Copy{1.5, 0.28}, Copy{2, 0.12}}) {
        QColor faint = color;
        faint.setAlphaF(static_cast<float>(color.alphaF() * copy.strength));
        painter.fillPath(shape.translated(0, copy.offset), faint);
    }
}

/// The three colours that a face has, for the states that a button can be in.
struct FaceColors {
    QColor normal;
    QColor hover;
    QColor pressed;
};

FaceColors faceColors(PushButton::Kind kind)
{
    const Theme &theme = Theme::current();
    switch (kind) {
    case PushButton::Kind::Bordered:
    case PushButton::Kind::BorderedDestructive:
        return {theme.face, theme.faceHover, theme.facePressed};
    case PushButton::Kind::Prominent:
        return {theme.accent, theme.accentHover, theme.accentPressed};
    case PushButton::Kind::Destructive:
        return {theme.red, theme.redHover, theme.redPressed};
    case PushButton::Kind::Plain:
        return {Qt::transparent, theme.quietHover, theme.quietPressed};
    }
    std::unreachable();
}

/// Pixels to a point where `painter` paints.
qreal scaleOf(const QPainter &painter)
{
    return painter.deviceTransform().m11();
}

} // namespace

PushButton::PushButton(Kind kind, const QString &text, QWidget *parent)
    : QPushButton(text, parent),
      m_kind(kind)
{
    setSize(Size::Regular);
    setAutoDefault(true); // Return presses it
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it is
    repaintWithTheme(*this);
}

void PushButton::setSize(Size size)
{
    m_size = size;
    setFont(::font(measures(size).textStyle));
    labelChanged();
}

void PushButton::setSymbol(const QString &symbolName)
{
    if (symbolName != m_symbolName) {
        m_symbolName = symbolName;
        labelChanged();
    }
}

void PushButton::setProgress(bool inProgress)
{
    if (inProgress == (m_spinner != nullptr)) {
        return;
    }
    if (inProgress) {
        m_spinner = new Spinner(spinnerSide, this);
        m_spinner->setAttribute(Qt::WA_TransparentForMouseEvents);
        const TextColor color = labelColor();
        m_spinner->setColor(color == TextColor::OnAccent ? color : TextColor::Secondary);
        m_spinner->show();
    } else {
        delete std::exchange(m_spinner, nullptr);
    }
    labelChanged();
}

/// The tooltip waits until it is asked for: to measure the text loads the font, which a button that isn't
/// shown needn't cost.
void PushButton::labelChanged()
{
    placeSpinner();
    updateGeometry();
    update();
}

int PushButton::faceHeight() const
{
    return measures(m_size).height;
}

int PushButton::padding() const
{
    return m_kind == Kind::Plain ? plainPadding : measures(m_size).padding;
}

int PushButton::markWidth() const
{
    if (m_spinner != nullptr) {
        return spinnerSide + gapAfterMark;
    }
    return m_symbolName.isEmpty() ? 0 : measures(m_size).symbolSide + gapAfterMark;
}

int PushButton::labelWidth() const
{
    return markWidth() + qCeil(QFontMetricsF(font()).horizontalAdvance(text()));
}

void PushButton::setPresence(qreal presence)
{
    m_presence = presence;
    update();
}

QSize PushButton::sizeHint() const
{
    return {labelWidth() + 2 * padding() + 2 * outset, faceHeight() + 2 * outset};
}

bool PushButton::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

PushButton::Label PushButton::label() const
{
    const int room = box().width() - 2 * leastPadding;
    if (markWidth() == 0) {
        return {.text = box(), .shownText = fontMetrics().elidedText(text(), Qt::ElideRight, room)};
    }
    const QString shownText = fontMetrics().elidedText(text(), Qt::ElideRight, room - markWidth());
    QRect whole(0, box().top(), qMin(labelWidth(), room), box().height());
    whole.moveLeft(box().left() + (box().width() - whole.width()) / 2);
    QRect mark(0, 0, markWidth() - gapAfterMark, markWidth() - gapAfterMark);
    mark.moveCenter(whole.center());
    mark.moveLeft(whole.left());
    return {
        .mark = QStyle::visualRect(layoutDirection(), whole, mark),
        .text = QStyle::visualRect(layoutDirection(), whole, whole.adjusted(markWidth(), 0, 0, 0)),
        .shownText = shownText,
    };
}

void PushButton::placeSpinner()
{
    if (m_spinner != nullptr) {
        m_spinner->move(label().mark.topLeft());
    }
}

void PushButton::updateToolTip()
{
    setToolTip(label().shownText == text() ? QString() : text());
}

void PushButton::resizeEvent(QResizeEvent *event)
{
    QPushButton::resizeEvent(event);
    placeSpinner();
    updateToolTip();
}

bool PushButton::event(QEvent *event)
{
    // The toolkit doesn't tell when the text changes without the size.
    if (event->type() == QEvent::ToolTip) {
        updateToolTip();
    }
    return QPushButton::event(event);
}

QColor PushButton::faceColor() const
{
    const FaceColors colors = faceColors(m_kind);
    if (isDown()) {
        return colors.pressed;
    }
    return isEnabled() && underMouse() ? colors.hover : colors.normal;
}

TextColor PushButton::labelColor() const
{
    switch (m_kind) {
    case Kind::Bordered:
        return TextColor::Primary;
    case Kind::BorderedDestructive:
        // What is under way warns of nothing any more.
        return m_spinner == nullptr ? TextColor::Red : TextColor::Primary;
    case Kind::Prominent:
    case Kind::Destructive:
        return TextColor::OnAccent;
    case Kind::Plain:
        return TextColor::Blue;
    }
    std::unreachable();
}

void PushButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal opacity = isEnabled() ? m_presence : disabledOpacity;
    if (opacity < 1) {
        // As one layer, so that the face doesn't shine through its own label.
        const qreal scale = scaleOf(painter);
        QPixmap layer((QSizeF(size()) * scale).toSize());
        layer.setDevicePixelRatio(scale);
        layer.fill(Qt::transparent);
        QPainter layerPainter(&layer);
        layerPainter.setRenderHint(QPainter::Antialiasing);
        layerPainter.setFont(font());
        layerPainter.setLayoutDirection(layoutDirection());
        paintButton(layerPainter);
        layerPainter.end();
        painter.setOpacity(opacity);
        painter.drawPixmap(0, 0, layer);
        painter.setOpacity(1);
    } else {
        paintButton(painter);
    }
    if (hasFocus()) {
        paintFocusRing(painter, box(), measures(m_size).radius);
    }
}

void PushButton::paintButton(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QPainterPath shape = continuousRoundedRect(box(), measures(m_size).radius);
    if (m_kind != Kind::Plain) {
        paintShadow(painter, shape, theme.controlShadow);
    }
    if (m_kind == Kind::Bordered || m_kind == Kind::BorderedDestructive) {
        // The outer half of a line of 1; the face covers the inner one.
        painter.strokePath(shape, QPen(theme.border, 1));
    }
    painter.fillPath(shape, faceColor());
    paintLabel(painter);
}

void PushButton::paintLabel(QPainter &painter) const
{
    const Label parts = label();
    const QColor tint = color(labelColor());
    if (m_spinner == nullptr && !m_symbolName.isEmpty()) {
        painter.drawImage(
            parts.mark.topLeft(), Symbols::image(m_symbolName, parts.mark.width(), scaleOf(painter), tint));
    }
    painter.setPen(tint);
    painter.drawText(parts.text, Qt::AlignCenter | Qt::TextSingleLine, parts.shownText);
}
