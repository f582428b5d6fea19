#include "AccessBanner.h"

#include "Theme.h"
#include "rendering.h"

#include <QTest>

namespace {

/// How many lines of text one sees: the rows of the texts' column that aren't of the face's colour alone, in
/// runs.
int lineCount(const QImage &image)
{
    const QRect column(60, 8, 100, AccessBanner::faceHeight - 8);
    const QColor face = colorAt(image, column.topLeft());
    int lines = 0;
    bool wasText = false;
    for (int y = column.top(); y <= column.bottom(); ++y) {
        bool isText = false;
        for (int x = column.left(); x <= column.right(); ++x) {
            isText |= !isNearly(image.pixelColor(x, y), face, 24);
        }
        lines += isText && !wasText;
        wasText = isText;
    }
    return lines;
}

} // namespace

/// What says that the folder can't be read.
class AccessBannerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void theSentenceIsReadToItsEnd_data();
    static void theSentenceIsReadToItsEnd();
};

void AccessBannerTest::theSentenceIsReadToItsEnd_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("lines");
    QTest::newRow("in the gallery's window") << 744 << 2;
    QTest::newRow("in the settings' window") << 393 << 3;
}

void AccessBannerTest::theSentenceIsReadToItsEnd()
{
    QFETCH(const int, width);
    QFETCH(const int, lines);
    AccessBanner banner;
    banner.resize(width, banner.height());
    QCOMPARE(lineCount(rendered(banner, 1, Theme::current().window)), lines);
}

QTEST_MAIN(AccessBannerTest)
#include "AccessBannerTest.moc"
