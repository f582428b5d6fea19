#include "FolderAccessStatus.h"

#include "PushButton.h"
#include "SymbolLabel.h"
#include "TextLabel.h"

#include <QEvent>
#include <QStyle>

namespace {

/// In points.
constexpr int faceHeight = 26;
constexpr int symbolSide = 12;
constexpr int gapAfterSymbol = 4;
/// With room for the focus ring around the button's face.
constexpr int gapBeforeChange = 16;
/// The middle of the label, which is that of the row's title.
constexpr int middleOfLabel = 8;

} // namespace

FolderAccessStatus::FolderAccessStatus(QWidget *parent)
    : QWidget(parent),
      m_symbol(new SymbolLabel(QStringLiteral("checkmark.circle.fill"), symbolSide, TextColor::Green, this)),
      m_granted(new TextLabel(TextStyle::Caption, tr("Granted"), this)),
      m_change(new PushButton(PushButton::Kind::Plain, tr("Change…"), this)),
      m_grant(new PushButton(PushButton::Kind::Prominent, tr("Grant Access"), this))
{
    m_granted->setColor(TextColor::Green);
    m_granted->setAlignment(Qt::AlignLeading);
    m_change->setSize(PushButton::Size::Mini);
    m_grant->setSize(PushButton::Size::Small);
    connect(m_change, &PushButton::clicked, this, &FolderAccessStatus::folderRequested);
    connect(m_grant, &PushButton::clicked, this, &FolderAccessStatus::folderRequested);
    setAccess(std::nullopt);
}

void FolderAccessStatus::setAccess(std::optional<bool> hasAccess)
{
    const bool mayHaveAccess = hasAccess.value_or(true);
    m_symbol->setVisible(hasAccess == true);
    m_granted->setVisible(hasAccess == true);
    PushButton *const shown = mayHaveAccess ? m_change : m_grant;
    PushButton *const other = mayHaveAccess ? m_grant : m_change;
    shown->show();
    if (window()->focusWidget() == other) {
        // The toolkit would give the keyboard to whatever comes next. Behind the picker the window isn't the
        // active one, and yet remembers who has it.
        shown->setFocus(Qt::OtherFocusReason);
    }
    other->hide();
    updateGeometry();
    layOut();
}

/// The label's with the gap behind it. It is kept free while it isn't known whether there will be one.
int FolderAccessStatus::grantedWidth() const
{
    return symbolSide + gapAfterSymbol + m_granted->sizeHint().width() + gapBeforeChange;
}

QSize FolderAccessStatus::sizeHint() const
{
    constexpr int ring = 2 * PushButton::outset;
    const int width =
        m_grant->isHidden() ? grantedWidth() + m_change->labelWidth() : m_grant->sizeHint().width() - ring;
    return QSize(width, faceHeight).grownBy(QMargins(outset, outset, outset, outset));
}

bool FolderAccessStatus::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        layOut();
    }
    return QWidget::event(event);
}

void FolderAccessStatus::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void FolderAccessStatus::layOut()
{
    constexpr int ring = PushButton::outset;
    const auto place = [this](QWidget &part, const QRect &box) {
        part.setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
    };
    const QRect box = rect().adjusted(outset, outset, -outset, -outset);
    place(*m_grant, box.adjusted(-ring, -ring, ring, ring));

    const int middle = box.top() + middleOfLabel;
    place(*m_symbol, {box.left(), middle - symbolSide / 2, symbolSide, symbolSide});
    const int labelHeight = lineHeight(TextStyle::Caption);
    const QRect label(
        box.left() + symbolSide + gapAfterSymbol, middle - labelHeight / 2, m_granted->sizeHint().width(),
        labelHeight);
    place(*m_granted, label);
    // Its text is flush with the margin; its face, which shows under the pointer, goes beyond.
    QRect change(QPoint(box.left() + grantedWidth() - m_change->padding() - ring, 0), m_change->sizeHint());
    change.moveTop(middle - change.height() / 2);
    place(*m_change, change);
}
