#include "SettingsWindowDelegate.h"
#include "presentWindow.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <type_traits>

static_assert(
    !std::is_default_constructible_v<SettingsWindowDelegate>, "A delegate without a closure doesn't compile");

/// Real windows, opened and closed as the application delegate does it.
class SettingsWindowDelegateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void tellsOnceThatItsWindowCloses();
    void askingTwiceOpensOneWindow();
    void aClosedWindowIsMadeAnew();
    void theClosedWindowsFieldIsClearedFirst();
    void aFixedWindowHasItsSize();
    void aResizableWindowHasItsLeastSize();

private:
    void present(WindowDescription::Controls controls = WindowDescription::Controls::CloseAndMinimize);

    QPointer<QWidget> m_window;
    std::unique_ptr<SettingsWindowDelegate> m_delegate;
    int m_madeViews = 0;
};

void SettingsWindowDelegateTest::cleanup()
{
    delete m_window;
    m_delegate.reset();
    m_madeViews = 0;
}

void SettingsWindowDelegateTest::present(WindowDescription::Controls controls)
{
    presentWindow(
        *this, {.window = m_window, .delegate = m_delegate},
        {
            .title = QStringLiteral("A Window"),
            .contentSize = {640, 480},
            .controls = controls,
            .minimumSize = {320, 240},
        },
        [this]() -> std::unique_ptr<QWidget> {
            ++m_madeViews;
            return std::make_unique<QLabel>(QStringLiteral("contents"));
        });
}

void SettingsWindowDelegateTest::tellsOnceThatItsWindowCloses()
{
    int count = 0;
    SettingsWindowDelegate delegate([&count] { ++count; });
    QWidget window;
    window.installEventFilter(&delegate);
    window.show();
    QCOMPARE(count, 0);
    window.close();
    QCOMPARE(count, 1);
}

void SettingsWindowDelegateTest::askingTwiceOpensOneWindow()
{
    present();
    QVERIFY(m_window);
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->windowTitle(), QStringLiteral("A Window"));
    const QWidget *const first = m_window;
    m_window->showMinimized();
    present();
    QCOMPARE(m_window.data(), first);
    QVERIFY(!m_window->isMinimized());
    QCOMPARE(m_madeViews, 1);
}

void SettingsWindowDelegateTest::aClosedWindowIsMadeAnew()
{
    present();
    const QPointer<QWidget> first = m_window;
    m_window->close();
    QVERIFY(!m_window);
    QVERIFY(!m_delegate);
    QTRY_VERIFY(!first);
    present();
    QVERIFY(m_window);
    QCOMPARE(m_madeViews, 2);
}

void SettingsWindowDelegateTest::theClosedWindowsFieldIsClearedFirst()
{
    present();
    bool delegateWasThere = false;
    // The delegate's end is the last thing that happens: by then the window's field is empty.
    connect(m_delegate.get(), &QObject::destroyed, this, [&] { delegateWasThere = m_window.isNull(); });
    m_window->close();
    QTRY_VERIFY(delegateWasThere);
}

void SettingsWindowDelegateTest::aFixedWindowHasItsSize()
{
    present();
    QCOMPARE(m_window->size(), QSize(640, 480));
    QCOMPARE(m_window->minimumSize(), m_window->maximumSize());
    QVERIFY(!m_window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

void SettingsWindowDelegateTest::aResizableWindowHasItsLeastSize()
{
    present(WindowDescription::Controls::CloseMinimizeAndResize);
    QCOMPARE(m_window->size(), QSize(640, 480));
    QCOMPARE(m_window->minimumSize(), QSize(320, 240));
    m_window->resize(800, 600);
    QCOMPARE(m_window->size(), QSize(800, 600));
}

QTEST_MAIN(SettingsWindowDelegateTest)
#include "SettingsWindowDelegateTest.moc"
