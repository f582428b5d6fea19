#include "ScreenshotConfirmationView.h"
#include "Bookmark.h"
#include "CapturedOutput.h"
#include "PopoverFrame.h"
#include "PushButton.h"
#include "ScreenshotPreview.h"
#include "Spinner.h"
#include "TemporaryHome.h"
#include "TestImages.h"
#include "TextLabel.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"
#include "savePicture.h"

#include <QAccessible>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTranslator>

namespace {

const QString bookmarkKey = QStringLiteral("DesktopFolderBookmark");

/// Which of the three answers were given.
struct Answers {
    int deleteNow = 0;
    int deleteLater = 0;
    int keep = 0;
};

std::unique_ptr<ScreenshotConfirmationView>
makeView(const QString &path, Answers &answers, qint64 timeframeInMinutes = 5)
{
    return std::make_unique<ScreenshotConfirmationView>(
        path, timeframeInMinutes, [&answers] { ++answers.deleteNow; }, [&answers] { ++answers.deleteLater; },
        [&answers] { ++answers.keep; });
}

QStringList buttonTexts(const QWidget &view)
{
    QStringList texts;
    for (const PushButton *button : view.findChildren<PushButton *>()) {
        texts.append(button->text());
    }
    return texts;
}

QRect boxOf(const PushButton &button)
{
    constexpr int outset = PushButton::outset;
    return button.geometry().adjusted(outset, outset, -outset, -outset);
}

/// Answers every text of the view with one that is longer.
class LongTranslation final : public QTranslator {
public:
    QString translate(const char *, const char *text, const char *, int) const override
    {
        const QLatin1String source(text);
        if (source == QLatin1String("Delete Now")) {
            return QStringLiteral("Jetzt sofort löschen");
        }
        if (source == QLatin1String("Delete in %lld min")) {
            return QStringLiteral("In %lld Minuten löschen");
        }
        if (source == QLatin1String("Keep")) {
            return QStringLiteral("Behalten und nie wieder nach diesem einen Bildschirmfoto gefragt werden");
        }
        return {};
    }

    [[nodiscard]] bool isEmpty() const override { return false; }
};

/// Shows the view as a popover does, on a wallpaper; follows its size.
class Host final : public QWidget {
public:
    explicit Host(std::unique_ptr<ScreenshotConfirmationView> view) : m_view(view.release())
    {
        m_view->setParent(this);
        m_view->show();
        place();
    }

    [[nodiscard]] ScreenshotConfirmationView &view() const { return *m_view; }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::LayoutRequest) {
            place();
        }
        return QWidget::event(event);
    }

    void paintEvent(QPaintEvent *) override
    {
        const bool dark = QApplication::palette().color(QPalette::Window).lightness() < 128;
        QPainter painter(this);
        painter.fillRect(rect(), dark ? QColor(0x11, 0x15, 0x19) : QColor(0xCF, 0xD6, 0xDE));
        PopoverFrame().paint(
            painter, {m_view->geometry(), PopoverEdge::Below, width() / 2.0},
            PopoverAppearance::Shadow::Drawn);
    }

private:
    void place()
    {
        m_view->setGeometry(QRect(QPoint(80, 43), m_view->sizeHint()));
        setFixedSize(460, m_view->height() + 106);
    }

    ScreenshotConfirmationView *m_view;
};

QImage testScreenshot(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(0xF4, 0xF5, 0xF9));
    QPainter painter(&image);
    painter.fillRect(0, 0, size.width() / 12, size.height(), Qt::white);
    painter.fillRect(
        size.width() / 4, size.height() / 4, size.width() / 2, size.height() / 2, QColor(0x2F, 0x6B, 0xDE));
    return image;
}

} // namespace

class ScreenshotConfirmationViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void buttonsAreNamedForTheTimeframe_data();
    void buttonsAreNamedForTheTimeframe();
    void eachButtonRunsItsAction();
    void answersAreReachableWithTheKeyboard();
    void growsWhenThePreviewArrives();
    void previewArrivesOnTheMainThread();
    void portraitIsPreviewedUpright();
    void largeScreenshotIsPreviewedFromAThumbnail();
    void unloadablePreviewKeepsTheSpinner_data();
    void unloadablePreviewKeepsTheSpinner();
    void longTextsGoUnderEachOther();
    void staleBookmarkIsNotRewritten();
    void unresolvableBookmarkIsPrinted();
    void viewThatIsGoneIsLeftAlone();
    void partsAreNamedForAssistivePrograms();

private:
    QString write(const QString &name, const QByteArray &bytes);
    QString writeScreenshot();

    std::unique_ptr<TemporaryHome> m_home;
};

void ScreenshotConfirmationViewTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
}

void ScreenshotConfirmationViewTest::cleanup()
{
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    m_home.reset();
}

QString ScreenshotConfirmationViewTest::write(const QString &name, const QByteArray &bytes)
{
    const QString path = m_home->desktop() + QLatin1Char('/') + name;
    files::write(path, bytes);
    return path;
}

QString ScreenshotConfirmationViewTest::writeScreenshot()
{
    return write(QStringLiteral("Screenshot.png"), testImages::encoded(testScreenshot({1920, 1200}), "png"));
}

void ScreenshotConfirmationViewTest::buttonsAreNamedForTheTimeframe_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QString>("text");
    QTest::newRow("1 minute, without a plural form") << qint64(1) << QStringLiteral("Delete in 1 min");
    QTest::newRow("5 minutes") << qint64(5) << QStringLiteral("Delete in 5 min");
    QTest::newRow("60 minutes") << qint64(60) << QStringLiteral("Delete in 60 min");
    QTest::newRow("none") << qint64(0) << QStringLiteral("Delete in 0 min");
    QTest::newRow("the most") << std::numeric_limits<qint64>::max()
                              << QStringLiteral("Delete in 9223372036854775807 min");
}

void ScreenshotConfirmationViewTest::buttonsAreNamedForTheTimeframe()
{
    QFETCH(const qint64, minutes);
    QFETCH(const QString, text);
    Answers answers;
    const auto view = makeView(writeScreenshot(), answers, minutes);
    const QStringList expected{QStringLiteral("Delete Now"), text, QStringLiteral("Keep")};
    QCOMPARE(buttonTexts(*view), expected);
}

void ScreenshotConfirmationViewTest::eachButtonRunsItsAction()
{
    Answers answers;
    const auto view = makeView(writeScreenshot(), answers);
    view->show();
    const QList<PushButton *> buttons = view->findChildren<PushButton *>();
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QCOMPARE(answers.deleteNow, 1);
    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QCOMPARE(answers.deleteLater, 1);
    QTest::mouseClick(buttons.at(2), Qt::LeftButton);
    QCOMPARE(answers.keep, 1);
    QCOMPARE(answers.deleteNow + answers.deleteLater, 2);
}

void ScreenshotConfirmationViewTest::answersAreReachableWithTheKeyboard()
{
    Answers answers;
    Host host(makeView(writeScreenshot(), answers));
    host.show();
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    const QList<PushButton *> buttons = host.view().findChildren<PushButton *>();
    QVERIFY(host.view().hasFocus());
    QTest::keyClick(&host.view(), Qt::Key_Return);
    QTest::keyClick(&host.view(), Qt::Key_Space);
    QCOMPARE(answers.deleteNow + answers.deleteLater + answers.keep, 0);
    QTest::keyClick(&host.view(), Qt::Key_Tab);
    QTRY_VERIFY(buttons.at(0)->hasFocus());
    QTest::keyClick(buttons.at(0), Qt::Key_Tab);
    QTRY_VERIFY(buttons.at(1)->hasFocus());
    QTest::keyClick(buttons.at(1), Qt::Key_Tab);
    QTRY_VERIFY(buttons.at(2)->hasFocus());
    savePicture(host, QStringLiteral("confirmation-focused"));
    QTest::keyClick(buttons.at(2), Qt::Key_Return);
    QCOMPARE(answers.keep, 1);
}

void ScreenshotConfirmationViewTest::growsWhenThePreviewArrives()
{
    Answers answers;
    Host host(makeView(writeScreenshot(), answers));
    QCOMPARE(host.view().size(), QSize(300, 226));
    host.show();
    savePicture(host, QStringLiteral("confirmation-loading"));
    // The popover follows through the layout request alone.
    QTRY_COMPARE(host.view().size(), QSize(300, 276));
    const auto *preview = host.view().findChild<ScreenshotPreview *>();
    QCOMPARE(preview->frame().size(), QSize(240, 150));
    QCOMPARE(preview->geometry().top(), 16 + 16 + 12);
    const QList<PushButton *> buttons = host.view().findChildren<PushButton *>();
    QCOMPARE(boxOf(*buttons.at(0)).topLeft(), QPoint(16, 276 - 16 - 28));
    QCOMPARE(boxOf(*buttons.at(2)).right(), 300 - 16 - 1);
    QVERIFY(!host.view().findChild<Spinner *>()->isVisible());
    for (PushButton *button : buttons) {
        button->setPresence(1);
    }
    savePicture(host, QStringLiteral("confirmation-preview"));
}

void ScreenshotConfirmationViewTest::previewArrivesOnTheMainThread()
{
    Answers answers;
    const auto view = makeView(writeScreenshot(), answers);
    QVERIFY(!view->previewImage().has_value());
    const QThread *arrivedOn = nullptr;
    connect(
        view.get(), &ScreenshotConfirmationView::previewImageChanged, view.get(),
        [&arrivedOn] { arrivedOn = QThread::currentThread(); }, Qt::DirectConnection);
    view->show();
    QTRY_VERIFY(view->previewImage().has_value());
    QCOMPARE(arrivedOn, QCoreApplication::instance()->thread());
}

void ScreenshotConfirmationViewTest::portraitIsPreviewedUpright()
{
    // Stored lying, with its upper half blue; orientation 6 turns it clockwise, so blue is at the right.
    QImage stored(800, 400, QImage::Format_RGB32);
    stored.fill(Qt::white);
    QPainter(&stored).fillRect(0, 0, 800, 200, Qt::blue);
    QImage little(16, 8, QImage::Format_RGB32);
    little.fill(Qt::red);
    const QByteArray jpeg =
        testImages::withExif(testImages::encoded(stored, "jpg"), 6, testImages::encoded(little, "jpg"));
    Answers answers;
    const auto view = makeView(write(QStringLiteral("Portrait.jpg"), jpeg), answers);
    view->show();
    QTRY_VERIFY(view->previewImage().has_value());
    const QImage &image = *view->previewImage();
    QCOMPARE(image.size(), QSize(300, 600));
    QVERIFY(image.pixelColor(225, 300).red() < 60);
    QVERIFY(image.pixelColor(75, 300).red() > 200);
    QCOMPARE(view->findChild<ScreenshotPreview *>()->frame().size(), QSize(75, 150));
}

void ScreenshotConfirmationViewTest::largeScreenshotIsPreviewedFromAThumbnail()
{
    Answers answers;
    const auto view =
        makeView(write(QStringLiteral("Screenshot.png"), testImages::blackPng({8000, 6000})), answers);
    view->show();
    QTRY_VERIFY_WITH_TIMEOUT(view->previewImage().has_value(), 30000);
    QCOMPARE(view->previewImage()->size(), QSize(600, 450));
    QCOMPARE(view->findChild<ScreenshotPreview *>()->frame().size(), QSize(200, 150));
}

void ScreenshotConfirmationViewTest::unloadablePreviewKeepsTheSpinner_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("not an image") << QByteArray("This is a text, whatever its name says.");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut short") << testImages::encoded(testScreenshot({640, 400}), "png").left(400);
}

void ScreenshotConfirmationViewTest::unloadablePreviewKeepsTheSpinner()
{
    QFETCH(const QByteArray, bytes);
    Answers answers;
    const auto view = makeView(write(QStringLiteral("Screenshot.png"), bytes), answers, 60);
    view->show();
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(!view->previewImage().has_value());
    QVERIFY(view->findChild<Spinner *>()->isSpinning());
    QCOMPARE(view->sizeHint(), QSize(300, 226));
    QTest::mouseClick(view->findChildren<PushButton *>().at(2), Qt::LeftButton);
    QCOMPARE(answers.keep, 1);
}

void ScreenshotConfirmationViewTest::longTextsGoUnderEachOther()
{
    LongTranslation translation;
    QVERIFY(QCoreApplication::installTranslator(&translation));
    Answers answers;
    Host host(makeView(writeScreenshot(), answers, 60));
    QCoreApplication::removeTranslator(&translation);
    host.show();
    QTRY_COMPARE(host.view().size(), QSize(300, 276 + 2 * (28 + 8)));
    const QList<PushButton *> buttons = host.view().findChildren<PushButton *>();
    QCOMPARE(buttons.at(1)->text(), QStringLiteral("In 60 Minuten löschen"));
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(boxOf(*buttons.at(row)), QRect(16, 232 + row * 36, 268, 28));
        buttons.at(row)->setPresence(1);
    }
    QVERIFY(buttons.at(1)->toolTip().isEmpty());
    QCOMPARE(buttons.at(2)->toolTip(), buttons.at(2)->text());
    savePicture(host, QStringLiteral("confirmation-long-labels"));
}

void ScreenshotConfirmationViewTest::staleBookmarkIsNotRewritten()
{
    const Result<QByteArray> bookmark =
        Bookmark::make(QUrl::fromLocalFile(m_home->desktop()), Bookmark::Origin::Automatic);
    QVERIFY(bookmark.has_value());
    UserDefaults::standard().setData(bookmarkKey, *bookmark);
    const QString renamed = m_home->path() + QStringLiteral("/Renamed");
    files::rename(m_home->desktop(), renamed);
    files::write(
        renamed + QStringLiteral("/Screenshot.png"), testImages::encoded(testScreenshot({640, 400}), "png"));
    const Result<Bookmark::ResolvedBookmark> resolved = Bookmark::resolve(*bookmark);
    QVERIFY(resolved.has_value() && resolved->isStale);

    Answers answers;
    const auto view = makeView(renamed + QStringLiteral("/Screenshot.png"), answers);
    view->show();
    QTRY_VERIFY(view->previewImage().has_value());
    QCOMPARE(UserDefaults::standard().data(bookmarkKey), std::optional<QByteArray>(*bookmark));
}

void ScreenshotConfirmationViewTest::unresolvableBookmarkIsPrinted()
{
    UserDefaults::standard().setData(bookmarkKey, QByteArray("no bookmark at all"));
    Answers answers;
    const auto view = makeView(writeScreenshot(), answers);
    QStringList lines;
    {
        const CapturedOutput output;
        view->show();
        background::pool(BackgroundQueue::UserInitiated).waitForDone();
        lines = output.lines().filter(QStringLiteral("Failed"));
    }
    QCOMPARE(lines.size(), 1);
    QVERIFY2(
        lines.constFirst().startsWith(
            QStringLiteral("Failed to resolve Desktop bookmark for preview: Error Domain=")),
        qPrintable(lines.constFirst()));
    QTRY_VERIFY(view->previewImage().has_value());
}

void ScreenshotConfirmationViewTest::viewThatIsGoneIsLeftAlone()
{
    Answers answers;
    auto view = makeView(writeScreenshot(), answers);
    view->show();
    view.reset();
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(answers.keep, 0);
}

void ScreenshotConfirmationViewTest::partsAreNamedForAssistivePrograms()
{
    Answers answers;
    const auto view = makeView(writeScreenshot(), answers);
    view->show();
    const auto role = [](QObject *object) { return QAccessible::queryAccessibleInterface(object)->role(); };
    QCOMPARE(role(view->findChild<Spinner *>()), QAccessible::ProgressBar);
    for (PushButton *button : view->findChildren<PushButton *>()) {
        QCOMPARE(role(button), QAccessible::Button);
    }
    QTRY_VERIFY(view->previewImage().has_value());
    auto *preview = view->findChild<ScreenshotPreview *>();
    QCOMPARE(role(preview), QAccessible::Graphic);
    QVERIFY(!QAccessible::queryAccessibleInterface(preview)->text(QAccessible::Name).isEmpty());
}

QTEST_MAIN(ScreenshotConfirmationViewTest)
#include "ScreenshotConfirmationViewTest.moc"
