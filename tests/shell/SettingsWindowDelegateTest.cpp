#include "SettingsWindowDelegate.h"
#include "presentWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
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
    void aWindowThatIsToldToCloseTwiceClosesOnce();
    void askingTwiceOpensOneWindow();
    void aClosedWindowIsMadeAnew();
    void theClosedWindowsFieldIsClearedFirst();
    void aFixedWindowHasItsSize();
    void aResizableWindowHasItsLeastSize();
    void aFixedWindowThatTheScreenHasNoRoomForIsScrolled();
    void contentsThatCanBeSmallerAreNotScrolled();

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

void SettingsWindowDelegateTest::aFixedWindowThatTheScreenHasNoRoomForIsScrolled()
{
    constexpr QSize tall(300, 3000);
    presentWindow(
        *this, {.window = m_window, .delegate = m_delegate},
        {
            .title = QStringLiteral("A Window"),
            .contentSize = tall,
            .controls = WindowDescription::Controls::TitleOnly,
            .minimumSize = {},
        },
        [] { return std::make_unique<QLabel>(QStringLiteral("contents")); });
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(room.height() < tall.height());
    QVERIFY(room.contains(QRect(m_window->pos(), m_window->size())));
    QCOMPARE(m_window->width(), tall.width());
    auto *const area = m_window->findChild<QScrollArea *>();
    QVERIFY(area != nullptr);
    QCOMPARE(area->widget()->height(), tall.height());
    QVERIFY(area->verticalScrollBar()->maximum() > 0);
}

void SettingsWindowDelegateTest::contentsThatCanBeSmallerAreNotScrolled()
{
    presentWindow(
        *this, {.window = m_window, .delegate = m_delegate},
        {
            .title = QStringLiteral("A Window"),
            .contentSize = {300, 3000},
            .controls = WindowDescription::Controls::TitleOnly,
            .minimumSize = {},
        },
        [] {
            auto view = std::make_unique<QLabel>(QStringLiteral("contents"));
            view->setMinimumSize(300, 200);
            return view;
        });
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(room.contains(QRect(m_window->pos(), m_window->size())));
    QVERIFY(m_window->findChild<QScrollArea *>() == nullptr);
    QCOMPARE(m_window->findChild<QLabel *>()->size(), m_window->size());
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
    // As from a second click before the first one has taken the window away.
    QCloseEvent again;
    QCoreApplication::sendEvent(&window, &again);
    QCOMPARE(count, 1);
}

void SettingsWindowDelegateTest::aWindowThatIsToldToCloseTwiceClosesOnce()
{
    present();
    const QPointer<QWidget> first = m_window;
    for (int time = 0; time < 2; ++time) {
        QCloseEvent close;
        QCoreApplication::sendEvent(first, &close);
        QVERIFY(close.isAccepted());
        QVERIFY(!m_window);
        QVERIFY(!m_delegate);
    }
    // The window that follows isn't taken for the one that closed.
    present();
    QCloseEvent late;
    QCoreApplication::sendEvent(first, &late);
    QVERIFY(m_window);
    QVERIFY(m_delegate);
    QTRY_VERIFY(!first);
    QVERIFY(m_window);
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
