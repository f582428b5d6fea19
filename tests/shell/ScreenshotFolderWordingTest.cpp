#include "ScreenshotFolderWording.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

namespace {

struct Message {
    QString context;
    QString source;
    QString wording;
};

/// The catalogue as it is written.
QList<Message> catalogue()
{
    QFile file(QStringLiteral(DESKBROOM_SOURCE_FOLDER "/resources/translations/screenshot-folder_en.ts"));
    QList<Message> messages;
    if (!file.open(QIODevice::ReadOnly)) {
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == u"name") {
            context = xml.readElementText();
        } else if (xml.name() == u"source") {
            messages.append({.context = context, .source = xml.readElementText(), .wording = {}});
        } else if (xml.name() == u"translation") {
            messages.last().wording = xml.readElementText();
        }
    }
    return messages;
}

QString said(const Message &message)
{
    return QCoreApplication::translate(
        message.context.toUtf8().constData(), message.source.toUtf8().constData());
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
            QCOMPARE(said(message), isElsewhere ? message.wording : message.source);
        }
    }
}

void ScreenshotFolderWordingTest::changesTextsThatTheSourceHas()
{
    for (const Message &message : catalogue()) {
        bool isInSource = false;
        for (const QString &folder :
             {QStringLiteral("access"), QStringLiteral("notify"), QStringLiteral("gallery/views")}) {
            QFile file(
                QStringLiteral(DESKBROOM_SOURCE_FOLDER "/src/") + folder + u'/' + message.context +
                QStringLiteral(".cpp"));
            isInSource = isInSource ||
                         (file.open(QIODevice::ReadOnly) &&
                          QString::fromUtf8(file.readAll())
                              .contains(QStringLiteral("tr(\"") + message.source + QStringLiteral("\")")));
        }
        QVERIFY2(isInSource, qPrintable(message.source));
        QVERIFY(message.source.contains(QStringLiteral("Desktop")));
        QVERIFY(!message.wording.contains(QStringLiteral("Desktop")));
    }
}

QTEST_GUILESS_MAIN(ScreenshotFolderWordingTest)
#include "ScreenshotFolderWordingTest.moc"
