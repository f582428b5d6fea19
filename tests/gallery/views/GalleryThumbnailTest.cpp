#include "GalleryThumbnail.h"
#include "GalleryViewFixture.h"
#include "Theme.h"
#include "rendering.h"

#include <QPainter>
#include <QSignalSpy>

namespace {

using Look = ScopedLook::Look;
using Selection = GalleryThumbnail::Selection;

constexpr QPointF origin(GalleryThumbnail::outset, GalleryThumbnail::outset);
constexpr QColor red(0xC0, 0, 0);
constexpr QColor green(0, 0xC0, 0);
constexpr QColor blue(0, 0, 0xC0);
constexpr QColor yellow(0xC0, 0xC0, 0);
constexpr QColor white(0xFF, 0xFF, 0xFF);

ScreenshotItem itemAt(const QString &path)
{
    ScreenshotItem item;
    item.id = path;
    return item;
}

GalleryGridMetrics standard()
{
    return GalleryGridMetrics::expanded(GalleryGridSize::Standard);
}

/// At a point of the cell, which begins at the image's corner.
QColor at(const QImage &picture, QPointF point)
{
    return colorAt(picture, origin + point);
}

/// Nothing is painted there but what a line of half a pixel leaves of itself beside its own.
bool isGround(const QColor &color, const QColor &ground)
{
    return isNearly(color, ground, 4);
}

void savePictures(const QList<QImage> &pictures, const QString &name)
{
    const QSize size = pictures.constFirst().size();
    QImage strip(size.width() * static_cast<int>(pictures.size()), size.height(), QImage::Format_RGB32);
    QPainter painter(&strip);
    int x = 0;
    for (QImage picture : pictures) {
        picture.setDevicePixelRatio(1);
        painter.drawImage(x, 0, picture);
        x += size.width();
    }
    painter.end();
    strip.save(qEnvironmentVariable("DESKBROOM_PICTURES") + u'/' + name);
}

} // namespace

class GalleryThumbnailTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void captionHasTwoDigits_data();
    void captionHasTwoDigits();
    void hasNoCaptionWhereNoneIsShown();
    void topLeftOfTheImageIsKept_data();
    void topLeftOfTheImageIsKept();
    void longImagesAreFittedWhole_data();
    void longImagesAreFittedWhole();
    void unreadableFileHasASymbolAndNoImage();
    void loadingIsACalmGray();
    void imageRisesUnderThePointer();
    void pressedImageIsSmallerAndDarker();
    void selectedImageHasARingInsideItsFrame();
    void focusRingLiesOutsideOfTheImage();
    void cornersAreRound();
    void oneEdgeDoesNotShowAtTheOther();
    void pixelsOfTheScreenAreFilledWhole();
    void imageIsTheSameAfterHiding();
    void changedFileIsShownAnew();
    void everyStateLooksDifferent();

private:
    void load(
        GalleryThumbnail &cell, const QImage &image = quarters({400, 300}),
        Selection selection = Selection::Off);

    std::unique_ptr<GalleryHome> m_home;
    std::unique_ptr<ThumbnailUse> m_use;
    int m_files = 0;
};

void GalleryThumbnailTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
    m_use = ThumbnailLoader::shared().use();
}

void GalleryThumbnailTest::cleanup()
{
    m_home->clear();
}

void GalleryThumbnailTest::load(GalleryThumbnail &cell, const QImage &image, Selection selection)
{
    cell.setUp(itemAt(makePicture(*m_home, ++m_files, image)), standard(), selection);
    cell.setFrameNumber(3);
    cell.load(ThumbnailLoader::Priority::Visible);
    QTRY_VERIFY_WITH_TIMEOUT(!cell.thumbnailImage().isNull(), patience);
    settle();
}

void GalleryThumbnailTest::captionHasTwoDigits_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("caption");
    QTest::newRow("the first") << 1 << QStringLiteral("01");
    QTest::newRow("the tenth") << 10 << QStringLiteral("10");
    QTest::newRow("the hundredth") << 100 << QStringLiteral("100");
}

void GalleryThumbnailTest::captionHasTwoDigits()
{
    QFETCH(const int, number);
    QFETCH(const QString, caption);
    GalleryThumbnail cell;
    cell.setUp(itemAt(QStringLiteral("/a.png")), standard(), Selection::Off);
    QVERIFY(cell.caption().isEmpty());
    cell.setFrameNumber(number);
    QCOMPARE(cell.caption(), caption);
}

void GalleryThumbnailTest::hasNoCaptionWhereNoneIsShown()
{
    GalleryThumbnail cell;
    cell.setUp(itemAt(QStringLiteral("/a.png")), GalleryGridMetrics::embedded(), Selection::Off);
    cell.setFrameNumber(1);
    QVERIFY(cell.caption().isEmpty());
    QCOMPARE(cell.size(), QSize(80 + 2 * GalleryThumbnail::outset, 60 + 2 * GalleryThumbnail::outset));
}

void GalleryThumbnailTest::topLeftOfTheImageIsKept_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("middleAcross");
    QTest::addColumn<int>("middleDown");
    // In a frame of 120 × 90.
    QTest::newRow("as wide as the frame") << QSize(400, 300) << 60 << 45;
    QTest::newRow("wider, cut at the right") << QSize(480, 300) << 72 << 45;
    QTest::newRow("higher, cut at the bottom") << QSize(300, 300) << 60 << 60;
}

void GalleryThumbnailTest::topLeftOfTheImageIsKept()
{
    QFETCH(const QSize, size);
    QFETCH(const int, middleAcross);
    QFETCH(const int, middleDown);
    GalleryThumbnail cell;
    load(cell, quarters(size));
    for (const qreal ratio : pixelRatios) {
        const QImage picture = rendered(cell, ratio, white);
        QVERIFY(isNearly(at(picture, QPointF(middleAcross - 3, middleDown - 3)), red));
        QVERIFY(isNearly(at(picture, QPointF(middleAcross + 3, middleDown - 3)), green));
        QVERIFY(isNearly(at(picture, QPointF(middleAcross - 3, middleDown + 3)), blue));
        QVERIFY(isNearly(at(picture, QPointF(middleAcross + 3, middleDown + 3)), yellow));
    }
}

void GalleryThumbnailTest::longImagesAreFittedWhole_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPointF>("empty");
    QTest::addColumn<QPointF>("filled");
    QTest::newRow("very wide") << QSize(600, 200) << QPointF(60, 10) << QPointF(10, 35);
    QTest::newRow("very high") << QSize(100, 400) << QPointF(10, 45) << QPointF(54, 10);
    QTest::newRow("a line") << QSize(900, 1) << QPointF(60, 10) << QPointF(10, 44.5);
}

void GalleryThumbnailTest::longImagesAreFittedWhole()
{
    QFETCH(const QSize, size);
    QFETCH(const QPointF, empty);
    QFETCH(const QPointF, filled);
    GalleryThumbnail cell;
    load(cell, quarters(size));
    const QImage picture = rendered(cell, 2, white);
    const QColor ground = composited(Theme::current().placeholder, white);
    QVERIFY(isNearly(at(picture, empty), ground));
    QVERIFY(!isNearly(at(picture, filled), ground, 20));
}

void GalleryThumbnailTest::unreadableFileHasASymbolAndNoImage()
{
    const QString path = m_home->makeScreenshot(++m_files); // text, not an image
    GalleryThumbnail cell;
    cell.setUp(itemAt(path), standard(), Selection::Off);
    cell.load(ThumbnailLoader::Priority::Visible);
    const QImage before = rendered(cell, 2, white);
    QTRY_VERIFY_WITH_TIMEOUT(cell.isUnreadable(), patience);
    QVERIFY(cell.thumbnailImage().isNull());
    const QImage after = rendered(cell, 2, white);
    QVERIFY(before != after);
    const QPointF besideTheSymbol(30, 20);
    QCOMPARE(at(before, besideTheSymbol), at(after, besideTheSymbol));
}

void GalleryThumbnailTest::loadingIsACalmGray()
{
    for (const Look look : {Look::Light, Look::Dark}) {
        const ScopedLook scoped(look);
        const Theme &theme = Theme::current();
        GalleryThumbnail cell;
        cell.setUp(itemAt(QStringLiteral("/a.png")), standard(), Selection::Off);
        const QImage picture = rendered(cell, 2, theme.window);
        for (const QPointF point : {QPointF(60, 45), QPointF(60, 5), QPointF(115, 45)}) {
            QVERIFY(isNearly(at(picture, point), composited(theme.placeholder, theme.window)));
        }
        QVERIFY(cell.findChildren<QObject *>().isEmpty());
    }
}

void GalleryThumbnailTest::imageRisesUnderThePointer()
{
    GalleryThumbnail cell;
    load(cell);
    for (const Look look : {Look::Light, Look::Dark}) {
        const ScopedLook scoped(look);
        const QColor ground = Theme::current().window;
        const int bright = qRound(0xC0 * (look == Look::Dark ? 1.12 : 1.05));
        for (const qreal ratio : pixelRatios) {
            cell.setAttention({});
            settle();
            const QImage before = rendered(cell, ratio, ground);
            cell.setAttention({.isHovered = true});
            settle();
            const QImage after = rendered(cell, ratio, ground);
            const QPointF above(40, -1);
            QVERIFY(isGround(at(before, above), ground));
            QVERIFY(at(after, above).red() > at(after, above).green() + 100);
            const QPointF below(60, 89);
            QVERIFY(at(after, below).lightness() < ground.lightness());
            QVERIFY(isNearly(at(after, QPointF(20, 20)), QColor(bright, 0, 0)));
            // The sign that a click copies: 24 wide, 6 from the corner of the image.
            const QPointF onSign(102, 62);
            QVERIFY(isNearly(at(before, onSign), yellow));
            QVERIFY(at(after, onSign).red() < 0x80);
            QVERIFY(isNearly(at(after, QPointF(116, 70)), QColor(bright, bright, 0), 8));
        }
    }
}

void GalleryThumbnailTest::pressedImageIsSmallerAndDarker()
{
    GalleryThumbnail cell;
    load(cell);
    cell.setAttention({.isHovered = true, .isPressed = true});
    settle();
    const QImage picture = rendered(cell, 2, white);
    QVERIFY(isNearly(at(picture, QPointF(20, 20)), QColor(qRound(0xC0 * 0.92), 0, 0)));
    QCOMPARE(at(picture, QPointF(0.5, 45)), white);
    QVERIFY(at(picture, QPointF(2, 30)) != white);
}

void GalleryThumbnailTest::selectedImageHasARingInsideItsFrame()
{
    const QColor unselectedBadge = composited(QColor(0x14, 0x16, 0x1A, 92), yellow);
    for (const Look look : {Look::Light, Look::Dark}) {
        const ScopedLook scoped(look);
        const QColor ring = look == Look::Dark ? QColor(0x53, 0x8A, 0xF5) : QColor(0x2F, 0x6B, 0xDE);
        const QColor ground = Theme::current().window;
        const QPointF onBadge(104, 68); // above its check mark
        GalleryThumbnail cell;
        load(cell, quarters({400, 300}), Selection::Unselected);
        for (const qreal ratio : pixelRatios) {
            cell.setSelection(Selection::Unselected);
            settle();
            QImage picture = rendered(cell, ratio, ground);
            QVERIFY(!isNearly(at(picture, QPointF(40, 1)), ring, 20));
            QVERIFY(isNearly(at(picture, onBadge), unselectedBadge, 4));
            cell.setSelection(Selection::Selected);
            settle();
            picture = rendered(cell, ratio, ground);
            QVERIFY(isNearly(at(picture, QPointF(40, 1)), ring));
            QVERIFY(isNearly(at(picture, QPointF(1, 45)), ring));
            QVERIFY(isNearly(at(picture, onBadge), Theme::current().accent));
            QVERIFY(isGround(at(picture, QPointF(40, -1)), ground));
        }
    }
}

void GalleryThumbnailTest::focusRingLiesOutsideOfTheImage()
{
    GalleryThumbnail cell;
    load(cell);
    const QColor ground = Theme::current().window;
    cell.setAttention({.hasFocus = true});
    settle();
    for (const qreal ratio : pixelRatios) {
        const QImage picture = rendered(cell, ratio, ground);
        QVERIFY(isNearly(at(picture, QPointF(60, -3)), composited(Theme::current().focusRing, ground)));
        QVERIFY(isGround(at(picture, QPointF(60, -1)), ground));
        QVERIFY(isNearly(at(picture, QPointF(20, 20)), red));
    }
}

void GalleryThumbnailTest::cornersAreRound()
{
    GalleryThumbnail cell;
    load(cell);
    for (const qreal ratio : pixelRatios) {
        const QImage picture = rendered(cell, ratio, white);
        QCOMPARE(at(picture, QPointF(1, 1)), white);
        QCOMPARE(at(picture, QPointF(118, 88)), white);
        QVERIFY(isNearly(at(picture, QPointF(8, 8)), red));
    }
}

void GalleryThumbnailTest::oneEdgeDoesNotShowAtTheOther()
{
    GalleryThumbnail cell;
    load(cell);
    cell.setAttention({.isHovered = true, .isPressed = true});
    settle();
    for (const qreal ratio : pixelRatios) {
        const QImage picture = rendered(cell, ratio, Qt::black);
        const int middle = picture.height() / 4;
        const int column = qRound((origin.x() + 30) * ratio);
        for (int row = 0; row < middle; ++row) {
            QVERIFY(picture.pixelColor(column, row).blue() < 0x10);
        }
    }
}

void GalleryThumbnailTest::pixelsOfTheScreenAreFilledWhole()
{
    GalleryThumbnail cell;
    load(cell);
    // The corner of the image is half a pixel away from whole ones.
    constexpr qreal ratio = 1.25;
    const QImage picture = rendered(cell, ratio, white);
    const int column = qRound((origin.x() + 30) * ratio);
    int row = 0;
    while (picture.pixelColor(column, row) == white) {
        ++row;
    }
    // The first has the line inside the image on it, the next is the image's own.
    QVERIFY(picture.pixelColor(column, row).green() < 0x40);
    QVERIFY(isNearly(picture.pixelColor(column, row + 1), red));
}

void GalleryThumbnailTest::imageIsTheSameAfterHiding()
{
    GalleryThumbnail cell;
    load(cell);
    cell.show();
    const QImage before = rendered(cell, 2, white);
    cell.hide();
    cell.show();
    QCOMPARE(rendered(cell, 2, white), before);
}

void GalleryThumbnailTest::changedFileIsShownAnew()
{
    GalleryThumbnail cell;
    load(cell);
    testImages::writeFile(cell.screenshot().id, QByteArray());
    QSignalSpy dropped(&ThumbnailLoader::shared(), &ThumbnailLoader::dropped);
    ThumbnailLoader::shared().revalidate();
    QTRY_VERIFY_WITH_TIMEOUT(dropped.contains(QList<QVariant>({cell.screenshot().id})), patience);
    QVERIFY(!cell.isUnreadable());
    cell.reload(ThumbnailLoader::Priority::Visible);
    QTRY_VERIFY_WITH_TIMEOUT(cell.isUnreadable(), patience);
    QVERIFY(cell.thumbnailImage().isNull());
}

/// With DESKBROOM_PICTURES set, keeps what it sees in that folder, and takes drawing.png there as the image.
void GalleryThumbnailTest::everyStateLooksDifferent()
{
    const QString folder = qEnvironmentVariable("DESKBROOM_PICTURES");
    QImage drawing(folder + QStringLiteral("/drawing.png"));
    if (drawing.isNull()) {
        drawing = quarters({640, 480});
    }
    for (const Look look : {Look::Light, Look::Dark}) {
        const ScopedLook scoped(look);
        QList<QImage> pictures;
        const auto paint = [&](GalleryThumbnail &cell) {
            settle();
            pictures.append(rendered(cell, 2, Theme::current().window));
        };
        GalleryThumbnail cell;
        load(cell, drawing);
        paint(cell);
        cell.setAttention({.isHovered = true});
        paint(cell);
        cell.setAttention({.isHovered = true, .isPressed = true});
        paint(cell);
        cell.setAttention({.hasFocus = true});
        paint(cell);
        cell.setAttention({});
        cell.setSelection(Selection::Unselected);
        paint(cell);
        cell.setSelection(Selection::Selected);
        paint(cell);
        GalleryThumbnail empty;
        empty.setUp(itemAt(QStringLiteral("/a.png")), standard(), Selection::Off);
        empty.setFrameNumber(3);
        paint(empty);
        empty.load(ThumbnailLoader::Priority::Visible);
        QTRY_VERIFY_WITH_TIMEOUT(empty.isUnreadable(), patience);
        paint(empty);
        for (qsizetype index = 1; index < pictures.size(); ++index) {
            QVERIFY(pictures.at(index) != pictures.at(index - 1));
        }
        if (!folder.isEmpty()) {
            savePictures(
                pictures,
                look == Look::Dark ? QStringLiteral("states-dark.png") : QStringLiteral("states-light.png"));
        }
    }
}

QTEST_MAIN(GalleryThumbnailTest)
#include "GalleryThumbnailTest.moc"
