#include "TextLabel.h"

#include <QAccessible>
#include <QTest>

namespace {

/// The columns of the image in which something is painted, as first and last, between two heights.
std::pair<int, int> inkColumns(const QImage &image, int top, int bottom)
{
    std::pair<int, int> columns(image.width(), -1);
    for (int y = top; y < bottom; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                columns = {qMin(columns.first, x), qMax(columns.second, x)};
            }
        }
    }
    return columns;
}

QImage painted(TextLabel &label)
{
    label.setAttribute(Qt::WA_TranslucentBackground);
    return label.grab().toImage();
}

} // namespace

class TextLabelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheLineHeightOfItsStyle_data();
    void hasTheLineHeightOfItsStyle();
    void twoLinesAreBalanced();
    void wordThatIsTooLongKeepsItsLine();
    void markupIsShownAsItIs();
};

void TextLabelTest::hasTheLineHeightOfItsStyle_data()
{
    QTest::addColumn<TextStyle>("style");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("height");
    QTest::newRow("title 3") << TextStyle::Title3 << 15 << 18;
    QTest::newRow("headline") << TextStyle::Headline << 13 << 16;
    QTest::newRow("body") << TextStyle::Body << 13 << 16;
    QTest::newRow("callout") << TextStyle::Callout << 12 << 16;
    QTest::newRow("subheadline") << TextStyle::Subheadline << 11 << 14;
    QTest::newRow("caption") << TextStyle::Caption << 10 << 13;
}

void TextLabelTest::hasTheLineHeightOfItsStyle()
{
    QFETCH(const TextStyle, style);
    QFETCH(const int, pixelSize);
    QFETCH(const int, height);
    const TextLabel label(style, QStringLiteral("Short"));
    QCOMPARE(label.font().pixelSize(), pixelSize);
    QCOMPARE(label.heightForWidth(268), height);
}

void TextLabelTest::twoLinesAreBalanced()
{
    TextLabel label(TextStyle::Body, QStringLiteral("one two three four five six seven"));
    const int oneLine = label.sizeHint().width();
    label.resize(oneLine - 10, 32);
    QCOMPARE(label.heightForWidth(label.width()), 32);
    const QImage image = painted(label);
    const qreal scale = image.devicePixelRatio();
    const auto first = inkColumns(image, 0, qRound(16 * scale));
    const auto second = inkColumns(image, qRound(16 * scale), qRound(32 * scale));
    const int firstWidth = first.second - first.first;
    const int secondWidth = second.second - second.first;
    QVERIFY(secondWidth > 0);
    // Unbalanced, the second line would be a word.
    QVERIFY2(
        firstWidth < secondWidth * 2 && secondWidth < firstWidth * 2,
        qPrintable(QStringLiteral("%1 %2").arg(firstWidth).arg(secondWidth)));
    // Centred.
    QVERIFY(qAbs((first.first + first.second) - image.width()) <= 4 * scale);
}

void TextLabelTest::wordThatIsTooLongKeepsItsLine()
{
    const TextLabel label(TextStyle::Body, QStringLiteral("Donaudampfschifffahrtsgesellschaft"));
    QCOMPARE(label.heightForWidth(50), 16);
}

void TextLabelTest::markupIsShownAsItIs()
{
    TextLabel label(TextStyle::Body, QStringLiteral("<b>no</b>"));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&label);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), QAccessible::StaticText);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("<b>no</b>"));
    const int width = QFontMetrics(label.font()).horizontalAdvance(QStringLiteral("<b>no</b>"));
    QVERIFY(qAbs(label.sizeHint().width() - width) <= 1);
}

QTEST_MAIN(TextLabelTest)
#include "TextLabelTest.moc"
