#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

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
    void anotherFontIsMeasuredAnew();
    void hasTheLineHeightOfItsStyle_data();
    void hasTheLineHeightOfItsStyle();
    void twoLinesAreBalanced();
    void wordThatIsTooLongKeepsItsLine();
    void markupIsShownAsItIs();
    void capitalsAreTracked();
    void colorFollowsTheLook_data();
    void colorFollowsTheLook();
    void alignmentIsMirroredFromRightToLeft_data();
    void alignmentIsMirroredFromRightToLeft();
    void singleLineIsElidedAndThenTheTooltip();
    void markupInTheTooltipIsShownAsItIs();
    void severalLinesAreElidedInTheMiddle();
    void elisionKeepsCharactersWhole();
    void fileNamesBreakAtBlanksOnly();
    void nameWithoutBlanksStillFits();
    void lineBreaksInNamesAreBlanks();
    void balancingKeepsWordsWhole();
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
    QTest::newRow("monospaced") << TextStyle::Monospaced << 10 << 12;
    QTest::newRow("frame number") << TextStyle::FrameNumber << 10 << 12;
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

void TextLabelTest::capitalsAreTracked()
{
    const QString text = QStringLiteral("GRID SIZE");
    const TextLabel tracked(TextStyle::Monospaced, text);
    const TextLabel plain(TextStyle::FrameNumber, text);
    const qreal difference = QFontMetricsF(tracked.font()).horizontalAdvance(text) -
                             QFontMetricsF(plain.font()).horizontalAdvance(text);
    QVERIFY2(qAbs(difference - 0.8 * 9) < 0.1, qPrintable(QString::number(difference)));
    QCOMPARE(tracked.font().families().constFirst(), QStringLiteral("JetBrains Mono"));
    QVERIFY(tracked.font().families().size() > 1);
}

void TextLabelTest::colorFollowsTheLook_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::addColumn<TextColor>("color");
    for (const ScopedLook::Look look : {ScopedLook::Look::Light, ScopedLook::Look::Dark}) {
        const char *name = look == ScopedLook::Look::Light ? "light" : "dark";
        QTest::addRow("%s, primary", name) << look << TextColor::Primary;
        QTest::addRow("%s, secondary", name) << look << TextColor::Secondary;
        QTest::addRow("%s, blue", name) << look << TextColor::Blue;
        QTest::addRow("%s, red", name) << look << TextColor::Red;
    }
}

void TextLabelTest::colorFollowsTheLook()
{
    QFETCH(const ScopedLook::Look, look);
    QFETCH(const TextColor, color);
    TextLabel label(TextStyle::Title3, QStringLiteral("HHHH"));
    label.resize(label.sizeHint());
    const ScopedLook scoped(look);
    label.setColor(color);
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(label, ratio, Theme::current().popover);
        int found = 0;
        for (int x = 0; x < image.width(); ++x) {
            found += isNearly(image.pixelColor(x, image.height() / 2), ::color(color), 8) ? 1 : 0;
        }
        QVERIFY2(found >= 4, qPrintable(QString::number(ratio)));
    }
}

void TextLabelTest::alignmentIsMirroredFromRightToLeft_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QString>("text");
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const char *name = direction == Qt::LeftToRight ? "left to right" : "right to left";
        QTest::addRow("%s, Latin", name) << direction << QStringLiteral("Short.");
        QTest::addRow("%s, Hebrew", name) << direction << QStringLiteral("שלום.");
    }
}

void TextLabelTest::alignmentIsMirroredFromRightToLeft()
{
    QFETCH(const Qt::LayoutDirection, direction);
    QFETCH(const QString, text);
    TextLabel label(TextStyle::Body, text);
    label.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label.setLayoutDirection(direction);
    label.resize(200, 16);
    const auto [first, last] = inkColumns(rendered(label), 0, 16);
    QVERIFY(last > first);
    QCOMPARE(first < 100, direction == Qt::LeftToRight);
    QCOMPARE(last < 100, direction == Qt::LeftToRight);
}

void TextLabelTest::singleLineIsElidedAndThenTheTooltip()
{
    TextLabel label(TextStyle::Body, QStringLiteral("Showing 30 of 87 screenshots"));
    label.show();
    label.setMaximumLineCount(1);
    label.resize(label.sizeHint().width(), 16);
    QVERIFY(label.toolTip().isEmpty());
    label.resize(100, 16);
    QCOMPARE(label.heightForWidth(100), 16);
    QCOMPARE(label.toolTip(), label.text());
    const auto [first, last] = inkColumns(rendered(label), 0, 16);
    QVERIFY(last < 100 && last - first > 70);
    label.setMaximumLineCount(0);
    QCOMPARE(label.heightForWidth(100), 32);
    QVERIFY(label.toolTip().isEmpty());
}

void TextLabelTest::markupInTheTooltipIsShownAsItIs()
{
    TextLabel label(TextStyle::Body, QStringLiteral("<b>bold</b> and more"));
    label.setMaximumLineCount(1);
    label.resize(40, 16);
    label.show();
    QHelpEvent event(QEvent::ToolTip, QPoint(), label.mapToGlobal(QPoint()));
    QApplication::sendEvent(&label, &event);
    QVERIFY2(
        QToolTip::text().contains(QStringLiteral("&lt;b&gt;bold&lt;/b&gt; and more")),
        qPrintable(QToolTip::text()));
    QToolTip::hideText();
}

void TextLabelTest::severalLinesAreElidedInTheMiddle()
{
    const auto image = [](const QString &beginning, const QString &middle, const QString &end) {
        const QString words = QStringLiteral("word ").repeated(60);
        TextLabel label(TextStyle::Callout, beginning + words + middle + words + end);
        label.show();
        label.setMaximumLineCount(3);
        label.resize(120, label.heightForWidth(120));
        return label.toolTip() == label.text() ? rendered(label) : QImage();
    };
    const QImage elided = image(QStringLiteral("one "), QStringLiteral("two "), QStringLiteral("three"));
    QCOMPARE(elided.height(), 48);
    QVERIFY(inkColumns(elided, 32, 48).second > 60);
    QCOMPARE(image(QStringLiteral("one "), QStringLiteral("2 "), QStringLiteral("three")), elided);
    QVERIFY(image(QStringLiteral("1 "), QStringLiteral("two "), QStringLiteral("three")) != elided);
    QVERIFY(image(QStringLiteral("one "), QStringLiteral("two "), QStringLiteral("3")) != elided);
}

void TextLabelTest::elisionKeepsCharactersWhole()
{
    // Two units and a mark.
    const QString character = QStringLiteral("\U0001F4F7\u0301");
    const auto image = [](const QString &text) {
        TextLabel label(TextStyle::Callout, text);
        label.setBreaking(TextLabel::Breaking::AtBlanks);
        label.setSpread(TextLabel::Spread::Filled);
        label.setMaximumLineCount(2);
        label.resize(120, 32);
        return rendered(label);
    };
    const QImage elided = image(character.repeated(100));
    QList<QImage> whole;
    for (int before = 1; before < 30; ++before) {
        for (const int after : {before - 1, before, before + 1}) {
            whole.append(image(character.repeated(before) + QChar(0x2026) + character.repeated(after)));
        }
    }
    QVERIFY(whole.contains(elided));
}

void TextLabelTest::fileNamesBreakAtBlanksOnly()
{
    const QString name = QStringLiteral("one-two-three-four-five");
    TextLabel label(TextStyle::Body, QStringLiteral("aaaa ") + name);
    const int widthOfName = qCeil(QFontMetricsF(label.font()).horizontalAdvance(name)) + 1;
    // By words, part of the name would go beside the first one.
    label.resize(widthOfName, 32);
    label.setAlignment(Qt::AlignLeft);
    const auto widthOfFirstLine = [&label] { return inkColumns(rendered(label), 0, 16).second; };
    const int byWords = widthOfFirstLine();
    label.setBreaking(TextLabel::Breaking::AtBlanks);
    QVERIFY(widthOfFirstLine() < byWords);
    QCOMPARE(label.heightForWidth(widthOfName), 32);
    QCOMPARE(label.text(), QStringLiteral("aaaa ") + name);
}

void TextLabelTest::nameWithoutBlanksStillFits()
{
    TextLabel label(TextStyle::Callout, QString(255, QChar(u'm')));
    label.setBreaking(TextLabel::Breaking::AtBlanks);
    const int height = label.heightForWidth(208);
    QVERIFY(height >= 10 * 16);
    label.resize(208, height);
    const auto [first, last] = inkColumns(rendered(label), 0, height);
    QVERIFY(first >= 0 && last < 208);
    // Nothing is lost: the last line has ink, and so has the first.
    QVERIFY(inkColumns(rendered(label), height - 16, height).second > 0);
}

void TextLabelTest::lineBreaksInNamesAreBlanks()
{
    TextLabel label(TextStyle::Body, QStringLiteral("one\ntwo\u2028three\rfour"));
    QCOMPARE(label.heightForWidth(500), 16);
    const TextLabel plain(TextStyle::Body, QStringLiteral("one two three four"));
    QCOMPARE(label.sizeHint(), plain.sizeHint());
    label.resize(label.sizeHint());
    QVERIFY(inkColumns(rendered(label), 0, 16).second > label.width() * 3 / 4);
}

void TextLabelTest::balancingKeepsWordsWhole()
{
    // Balanced freely, both lines would be half of the whole, and the name broken.
    const QString name = QStringLiteral("Screenshot_of_a_longer_name.png");
    TextLabel label(TextStyle::Body, name + QStringLiteral(" has been"));
    label.setBreaking(TextLabel::Breaking::AtBlanks);
    const int widthOfName = QFontMetrics(label.font()).horizontalAdvance(name);
    label.resize(widthOfName + 10, 32);
    QCOMPARE(label.heightForWidth(label.width()), 32);
    const auto [first, last] = inkColumns(rendered(label), 0, 16);
    QVERIFY2(last - first > widthOfName - 6, qPrintable(QString::number(last - first)));
}

void TextLabelTest::anotherFontIsMeasuredAnew()
{
    TextLabel label(TextStyle::Body, QStringLiteral("Wherever the font becomes a wider one"));
    const int width = label.sizeHint().width();
    const int height = label.heightForWidth(width);
    label.setFont(font(TextStyle::WelcomeHeadline));
    QVERIFY(label.sizeHint().width() > width);
    QVERIFY(label.heightForWidth(width) > height);
}

QTEST_MAIN(TextLabelTest)
#include "TextLabelTest.moc"
