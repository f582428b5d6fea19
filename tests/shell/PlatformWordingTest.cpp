#include "PlatformWording.h"

#include "GalleryPlaceholder.h"
#include "ScreenshotFolderWording.h"
#include "TextLabel.h"
#include "savePicture.h"
#include "translationCatalogue.h"

#include <QLocale>
#include <QTest>

#include <algorithm>

namespace {

using translationCatalogue::Message;

QList<Message> catalogue()
{
    return translationCatalogue::read(QStringLiteral("linux_en"));
}

/// What only another platform has.
bool isForeign(const QString &text)
{
    return text.contains(u'⌘') || text.contains(u'⇧') || text.contains(QStringLiteral("macOS")) ||
           text.contains(QStringLiteral("menu bar"));
}

} // namespace

class PlatformWordingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void saysItInEveryLocale_data();
    void saysItInEveryLocale();
    void staysBesideTheFoldersWording();
    void changesTextsThatTheSourceHas();
    void fitsThePopover();
};

void PlatformWordingTest::saysItInEveryLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("English") << QLocale(QLocale::English);
    QTest::newRow("German") << QLocale(QLocale::German);
    QTest::newRow("Arabic") << QLocale(QLocale::Arabic);
    QTest::newRow("none") << QLocale::c();
}

void PlatformWordingTest::saysItInEveryLocale()
{
    QFETCH(const QLocale, locale);
    const QLocale before;
    QLocale::setDefault(locale);
    const QList<Message> messages = catalogue();
    QVERIFY(!messages.isEmpty());
    {
        PlatformWording wording;
        for (const Message &message : messages) {
            QCOMPARE(translationCatalogue::said(message), message.source);
        }
        wording.install();
        for (const Message &message : messages) {
            QCOMPARE(translationCatalogue::said(message), message.wording);
        }
    }
    for (const Message &message : messages) {
        QCOMPARE(translationCatalogue::said(message), message.source);
    }
    QLocale::setDefault(before);
}

void PlatformWordingTest::staysBesideTheFoldersWording()
{
    PlatformWording wording;
    wording.install();
    ScreenshotFolderWording folderWording;
    for (const bool isElsewhere : {true, false}) {
        folderWording.use(isElsewhere);
        for (const Message &message : catalogue()) {
            QCOMPARE(translationCatalogue::said(message), message.wording);
        }
    }
}

void PlatformWordingTest::changesTextsThatTheSourceHas()
{
    for (const Message &message : catalogue()) {
        QVERIFY2(translationCatalogue::isInCode(message), qPrintable(message.source));
        QVERIFY(isForeign(message.source));
        QVERIFY(!isForeign(message.wording));
    }
}

void PlatformWordingTest::fitsThePopover()
{
    constexpr int popoverWidth = 248;
    PlatformWording wording;
    wording.install();
    GalleryPlaceholder placeholder(GalleryMode::Embedded);
    placeholder.resize(popoverWidth, popoverWidth);
    placeholder.setState(GalleryPlaceholder::State::Empty);
    placeholder.show();
    const QList<TextLabel *> labels = placeholder.findChildren<TextLabel *>();
    const auto label =
        std::ranges::find_if(labels, [](const TextLabel *text) { return text->text().contains(u"Print"); });
    QVERIFY(label != labels.end());
    savePicture(placeholder, QStringLiteral("gallery-popover-empty-linux"));
    QVERIFY((*label)->width() < popoverWidth);
    const int lineHeight = TextLabel(TextStyle::Subheadline, QStringLiteral("Print")).sizeHint().height();
    QVERIFY((*label)->height() <= 2 * lineHeight);
}

QTEST_MAIN(PlatformWordingTest)
#include "PlatformWordingTest.moc"
