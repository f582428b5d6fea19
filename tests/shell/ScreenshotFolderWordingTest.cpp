#include "ScreenshotFolderWording.h"

#include "translationCatalogue.h"

#include <QTest>

namespace {

using translationCatalogue::Message;

QList<Message> catalogue()
{
    return translationCatalogue::read(QStringLiteral("screenshot-folder_en"));
}

} // namespace

class ScreenshotFolderWordingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void saysScreenshotFolderWhileTheDesktopIsElsewhere();
    void changesTextsThatTheSourceHas();
};

void ScreenshotFolderWordingTest::saysScreenshotFolderWhileTheDesktopIsElsewhere()
{
    const QList<Message> messages = catalogue();
    QVERIFY(!messages.isEmpty());
    ScreenshotFolderWording wording;
    for (const bool isElsewhere : {false, true, true, false}) {
        wording.use(isElsewhere);
        for (const Message &message : messages) {
            QCOMPARE(translationCatalogue::said(message), isElsewhere ? message.wording : message.source);
        }
    }
}

void ScreenshotFolderWordingTest::changesTextsThatTheSourceHas()
{
    for (const Message &message : catalogue()) {
        QVERIFY2(translationCatalogue::isInCode(message), qPrintable(message.source));
        QVERIFY(message.source.contains(QStringLiteral("Desktop")));
        QVERIFY(!message.wording.contains(QStringLiteral("Desktop")));
    }
}

QTEST_GUILESS_MAIN(ScreenshotFolderWordingTest)
#include "ScreenshotFolderWordingTest.moc"
