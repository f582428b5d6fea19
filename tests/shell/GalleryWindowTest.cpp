#include "AppDelegate.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

namespace {

class View final : public QWidget {
public:
    View() { setFocusPolicy(Qt::StrongFocus); }

    void keyPressEvent(QKeyEvent *event) override
    {
        event->setAccepted(takesEscape && event->key() == Qt::Key_Escape);
    }

    bool takesEscape = false;
};

} // namespace

/// The gallery's window of the program on a screen that has room for it.
class GalleryWindowTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QWidget *window() const { return m_delegate->galleryWindow(); }

    const TemporaryHome m_home;
    std::unique_ptr<AppDelegate> m_delegate;
    QPointer<View> m_view;
    int m_made = 0;

private Q_SLOTS:

    void init()
    {
        m_made = 0;
        m_delegate = std::make_unique<AppDelegate>(WindowViews{
            .gallery =
                [this] {
                    auto view = std::make_unique<View>();
                    m_view = view.get();
                    ++m_made;
                    return view;
                },
        });
        m_delegate->showGalleryWindow();
    }

    void cleanup() { m_delegate.reset(); }

    void itIsCentredInItsSize()
    {
        QCOMPARE(window()->windowTitle(), QStringLiteral("Screenshot Gallery"));
        QCOMPARE(window()->size(), QSize(1200, 900));
        QCOMPARE(window()->minimumSize(), QSize(800, 700));
        // The frame's breadth isn't known beforehand.
        const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
        QVERIFY((window()->frameGeometry().center() - middle).manhattanLength() <= 8);
        QCOMPARE(m_view->size(), QSize(1200, 900));
    }

    void itHasTheProgramsIcon()
    {
        QVERIFY(!window()->windowIcon().pixmap(48).isNull());
        QVERIFY2(QApplication::windowIcon().isNull(), "nothing stays loaded without the window");
    }

    void askedForTwiceItIsOneWindow()
    {
        const QWidget *const first = window();
        QTRY_VERIFY(first->isActiveWindow());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!first->isActiveWindow());
        m_delegate->showGalleryWindow();
        QCOMPARE(window(), first);
        QCOMPARE(m_made, 1);
        QTRY_VERIFY(first->isActiveWindow());
    }

    void aMinimizedWindowComesBack()
    {
        window()->showMinimized();
        m_delegate->showGalleryWindow();
        QVERIFY(!window()->isMinimized());
    }

    void afterClosingThereIsANewOne()
    {
        const QPointer<QWidget> first = window();
        first->close();
        QCOMPARE(window(), nullptr);
        QTRY_VERIFY2(!first, "a closed window goes with its view");
        m_delegate->showGalleryWindow();
        QVERIFY(window() != nullptr);
        QCOMPARE(m_made, 2);
    }

    void keysThatTheViewLeavesCloseIt_data()
    {
        QTest::addColumn<QKeyCombination>("key");
        QTest::newRow("Escape") << QKeyCombination(Qt::Key_Escape);
        QTest::newRow("Ctrl+W") << QKeyCombination(Qt::CTRL | Qt::Key_W);
    }

    void keysThatTheViewLeavesCloseIt()
    {
        QFETCH(const QKeyCombination, key);
        QTest::keyClick(m_view, key.key(), key.keyboardModifiers());
        QCOMPARE(window(), nullptr);
    }

    void anEscapeThatTheViewTakesLeavesItOpen()
    {
        m_view->takesEscape = true;
        QTest::keyClick(m_view, Qt::Key_Escape);
        QVERIFY(window() != nullptr);
    }
};

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    const QString screens = folder.filePath(QStringLiteral("screens.json"));
    files::write(screens, R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": 1920, "height": 1080,
        "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.toUtf8());
    const QApplication application(argc, argv);
    GalleryWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "GalleryWindowTest.moc"
