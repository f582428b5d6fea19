#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QXmlStreamReader>

/// The project's catalogues of other wordings, as they are written, beside the code that they are for.
namespace translationCatalogue {

struct Message {
    QString context;
    QString source;
    QString wording;
};

/// Empty if there is no catalogue of that name.
[[nodiscard]] inline QList<Message> read(const QString &name)
{
    QFile file(
        QStringLiteral(DESKBROOM_SOURCE_FOLDER "/resources/translations/") + name + QStringLiteral(".ts"));
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

/// What the program says at the moment.
[[nodiscard]] inline QString said(const Message &message)
{
    return QCoreApplication::translate(
        message.context.toUtf8().constData(), message.source.toUtf8().constData());
}

/// Whether the class that is the message's context has its source as a text of its own.
[[nodiscard]] inline bool isInCode(const Message &message)
{
    // A long text is several literals in the code.
    static const QRegularExpression seams(QStringLiteral("\"\\s+\"|(?<=tr\\()\\s+"));
    for (const QString &folder :
         {QStringLiteral("access"), QStringLiteral("notify"), QStringLiteral("gallery/views"),
          QStringLiteral("settings"), QStringLiteral("settings/views"), QStringLiteral("onboarding/views")}) {
        QFile file(
            QStringLiteral(DESKBROOM_SOURCE_FOLDER "/src/") + folder + u'/' + message.context +
            QStringLiteral(".cpp"));
        if (file.open(QIODevice::ReadOnly) &&
            QString::fromUtf8(file.readAll())
                .remove(seams)
                .contains(QStringLiteral("tr(\"") + message.source + QStringLiteral("\")"))) {
            return true;
        }
    }
    return false;
}

} // namespace translationCatalogue
