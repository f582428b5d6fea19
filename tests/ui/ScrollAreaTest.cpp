#include "ScrollArea.h"
#include "SlimScrollBar.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

namespace {

/// Contents of a given height, with a field far down, that keep PageUp for themselves.
class Contents final : public QWidget {
public:
    explicit Contents(int height)
    {
        setFocusPolicy(Qt::StrongFocus);
        setMinimumHeight(height);
    }

    int pageUps = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_PageUp) {
            ++pageUps;
        } else {
            event->ignore();
        }
    }
};

QColor thumbColor(float opacity)
{
    QColor color = Theme::current().secondary;
    color.setAlphaF(opacity);
    return color;
}

} // namespace

class ScrollAreaTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void takesNoWidthFromItsContents();
    void barIsThereOnlyForMoreThanFits();
    void paintsASlimThumb_data();
    void paintsASlimThumb();
    void thumbIsBroaderUnderThePointer();
    void thumbIsDragged();
    void pressBesideTheThumbGoesByPages();
    void wheelScrolls();
    void keysAreTheContentsFirst();
    void isNoTabStop();
    void tabScrollsToWhatHasTheFocus();
    void neverScrollsAcross();
    void groundShinesThrough();
    void barIsAtTheLeftFromRightToLeft();
    void barStaysOutOfItsMargins();
    void isAScrollBarForAssistivePrograms();

private:
    void fill(int height)
    {
        m_contents = new Contents(height);
        m_area->setWidget(m_contents);
        m_area->show();
        m_bar = m_area->findChild<SlimScrollBar *>();
    }

    std::unique_ptr<ScrollArea> m_area;
    Contents *m_contents = nullptr;
    SlimScrollBar *m_bar = nullptr;
};

void ScrollAreaTest::init()
{
    m_area = std::make_unique<ScrollArea>();
    m_area->resize(300, 206);
}

void ScrollAreaTest::cleanup()
{
    m_area.reset();
}

void ScrollAreaTest::takesNoWidthFromItsContents()
{
    fill(1000);
    QCOMPARE(m_contents->size(), QSize(300, 1000));
    m_area->resize(200, 206);
    QCOMPARE(m_contents->width(), 200);
}

void ScrollAreaTest::barIsThereOnlyForMoreThanFits()
{
    fill(206);
    QVERIFY(m_bar->isHidden());
    m_contents->setMinimumHeight(207);
    QTRY_VERIFY(m_bar->isVisible());
    m_area->resize(300, 207);
    QVERIFY(m_bar->isHidden());
}

void ScrollAreaTest::paintsASlimThumb_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void ScrollAreaTest::paintsASlimThumb()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    fill(824);
    QCOMPARE(m_bar->geometry(), QRect(286, 0, 14, 206));
    m_bar->setAttribute(Qt::WA_UnderMouse, false);
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(*m_bar, ratio);
        // A quarter fits: a thumb of 50 in a way of 200, 6 wide and 3 from the edge.
        QVERIFY(isNearly(colorAt(image, {8, 10}), thumbColor(0.4F)));
        QVERIFY(isNearly(colorAt(image, {8, 48}), thumbColor(0.4F)));
        QCOMPARE(colorAt(image, {8, 55}).alpha(), 0);
        QCOMPARE(colorAt(image, {3, 20}).alpha(), 0);
        QCOMPARE(colorAt(image, {12, 20}).alpha(), 0);
        QCOMPARE(colorAt(image, {8, 1}).alpha(), 0);
    }
    m_area->verticalScrollBar()->setValue(m_area->verticalScrollBar()->maximum());
    QVERIFY(isNearly(colorAt(rendered(*m_bar), {8, 195}), thumbColor(0.4F)));
    QCOMPARE(colorAt(rendered(*m_bar), {8, 20}).alpha(), 0);
    savePicture(*m_area, QStringLiteral("scroll-area"));
}

void ScrollAreaTest::thumbIsBroaderUnderThePointer()
{
    fill(824);
    m_bar->setAttribute(Qt::WA_UnderMouse, false);
    QCOMPARE(colorAt(rendered(*m_bar, 2), {4, 20}).alpha(), 0);
    m_bar->setAttribute(Qt::WA_UnderMouse);
    QVERIFY(isNearly(colorAt(rendered(*m_bar, 2), {4, 20}), thumbColor(0.6F)));
    QVERIFY(isNearly(colorAt(rendered(*m_bar, 2), {8, 20}), thumbColor(0.6F)));
}

void ScrollAreaTest::thumbIsDragged()
{
    fill(824);
    const QScrollBar &real = *m_area->verticalScrollBar();
    QCOMPARE(real.maximum(), 824 - 206);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, QPoint(8, 20));
    QTest::mouseMove(m_bar, QPoint(8, 20 + 75));
    QCOMPARE(real.value(), (824 - 206) / 2);
    // Far beyond the end, and away from the bar.
    QTest::mouseMove(m_bar, QPoint(-100, 900));
    QCOMPARE(real.value(), 824 - 206);
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, QPoint(-100, 900));
    QTest::mouseMove(m_bar, QPoint(8, 20));
    QCOMPARE(real.value(), 824 - 206);
}

void ScrollAreaTest::pressBesideTheThumbGoesByPages()
{
    fill(824);
    const QScrollBar &real = *m_area->verticalScrollBar();
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, QPoint(8, 190));
    QCOMPARE(real.value(), 206);
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, QPoint(8, 5));
    QCOMPARE(real.value(), 0);
}

void ScrollAreaTest::wheelScrolls()
{
    fill(824);
    for (QWidget *widget : {static_cast<QWidget *>(m_contents), static_cast<QWidget *>(m_bar)}) {
        m_area->verticalScrollBar()->setValue(0);
        QWheelEvent wheel(
            QPointF(8, 8), widget->mapToGlobal(QPointF(8, 8)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget == m_contents ? m_area->viewport() : widget, &wheel);
        QVERIFY(m_area->verticalScrollBar()->value() > 0);
        QCOMPARE(m_bar->value(), m_area->verticalScrollBar()->value());
    }
}

void ScrollAreaTest::keysAreTheContentsFirst()
{
    fill(824);
    QTest::keyClick(m_contents, Qt::Key_PageDown);
    QCOMPARE(m_area->verticalScrollBar()->value(), 206);
    QTest::keyClick(m_contents, Qt::Key_PageUp);
    QCOMPARE(m_contents->pageUps, 1);
    QCOMPARE(m_area->verticalScrollBar()->value(), 206);
}

void ScrollAreaTest::isNoTabStop()
{
    fill(824);
    QCOMPARE(m_area->focusPolicy(), Qt::NoFocus);
    QCOMPARE(m_bar->focusPolicy(), Qt::NoFocus);
}

void ScrollAreaTest::tabScrollsToWhatHasTheFocus()
{
    fill(824);
    auto *field = new QLineEdit(m_contents);
    field->setGeometry(20, 700, 100, 24);
    field->show();
    m_area->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_area.get()));
    m_contents->setFocus();
    QTest::keyClick(m_contents, Qt::Key_Tab);
    QVERIFY(field->hasFocus());
    QVERIFY(m_area->viewport()->rect().contains(field->geometry().translated(m_contents->pos())));
}

void ScrollAreaTest::neverScrollsAcross()
{
    fill(824);
    m_contents->setMinimumWidth(900);
    auto *field = new QLineEdit(m_contents);
    field->setGeometry(700, 20, 100, 24);
    QTRY_COMPARE(m_contents->width(), 900);
    m_area->ensureWidgetVisible(field);
    QCOMPARE(m_area->horizontalScrollBar()->maximum(), 0);
    QCOMPARE(m_contents->x(), 0);
}

void ScrollAreaTest::groundShinesThrough()
{
    QWidget window;
    window.resize(300, 206);
    m_area->setParent(&window);
    fill(100);
    window.show();
    const QImage image = rendered(window, 1, Qt::magenta);
    QCOMPARE(colorAt(image, {150, 50}), QColor(Qt::magenta));
    QCOMPARE(colorAt(image, {150, 180}), QColor(Qt::magenta));
    m_area->setParent(nullptr);
}

void ScrollAreaTest::barIsAtTheLeftFromRightToLeft()
{
    fill(824);
    m_area->setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(m_bar->x(), 0);
    m_bar->setAttribute(Qt::WA_UnderMouse, false);
    QVERIFY(isNearly(colorAt(rendered(*m_bar), {6, 20}), thumbColor(0.4F)));
    QCOMPARE(colorAt(rendered(*m_bar), {11, 20}).alpha(), 0);
}

void ScrollAreaTest::barStaysOutOfItsMargins()
{
    fill(824);
    m_area->setBarMargins(52, 4);
    QCOMPARE(m_bar->geometry(), QRect(286, 52, 14, 150));
}

void ScrollAreaTest::isAScrollBarForAssistivePrograms()
{
    fill(824);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(m_bar);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), QAccessible::ScrollBar);
    accessible->valueInterface()->setCurrentValue(300);
    QCOMPARE(m_area->verticalScrollBar()->value(), 300);
}

QTEST_MAIN(ScrollAreaTest)
#include "ScrollAreaTest.moc"
