#include "screenshotDescription.h"

#include "ScreenshotItem.h"

#include <QLocale>

namespace {

constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

/// U+2400 and on are pictures of the control characters of ASCII, in their order.
constexpr char16_t controlPictures = 0x2400;
constexpr QChar pictureOfDelete(0x2421);

/// In characters, for a tooltip.
constexpr qsizetype longestWholeName = 80;

QChar visible(QChar character)
{
    if (character.unicode() < 0x20) {
        return {static_cast<char16_t>(controlPictures + character.unicode())};
    }
    if (character == QChar(0x7F)) {
        return pictureOfDelete;
    }
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return QChar::ReplacementCharacter;
    default:
        break;
    }
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirRLE:
    case QChar::DirLRO:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return QChar::ReplacementCharacter;
    default:
        return character;
    }
}

} // namespace

QString screenshotDescription::displayName(const QString &name)
{
    QString shown;
    shown.reserve(name.size() + 2);
    shown += firstStrongIsolate;
    for (const QChar character : name) {
        shown += visible(character);
    }
    shown += popDirectionalIsolate;
    return shown;
}

QString screenshotDescription::details(const ScreenshotItem &screenshot)
{
    const QLocale locale;
    return locale.formattedDataSize(screenshot.fileSize) + QStringLiteral(", ") +
           locale.toString(screenshot.creationDate.toLocalTime(), QLocale::ShortFormat);
}

QString screenshotDescription::toolTip(const ScreenshotItem &screenshot)
{
    const QString name = displayName(screenshot.name());
    // Rich text is broken to a narrow column of its own accord, which only long names need.
    const QString whiteSpace =
        name.size() <= longestWholeName ? QStringLiteral("pre") : QStringLiteral("pre-wrap");
    return QStringLiteral("<p style=\"white-space:%1\">%2<br>%3</p>")
        .arg(whiteSpace, name.toHtmlEscaped(), details(screenshot).toHtmlEscaped());
}
