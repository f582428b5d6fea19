#include "notificationText.h"

#include <algorithm>

namespace {

constexpr QChar ellipsis(0x2026);

bool isLineBreak(QChar character)
{
    return character == u'\n' || character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

/// Characters that turn the text behind them round, and with it what stands after a folder's name.
bool isBidirectionalControl(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

/// Control characters become spaces, which covers NUL (it would end the text on its way), and halves of
/// surrogate pairs the replacement character, because the bus throws out whoever sends invalid UTF-8.
QString cleaned(QStringView text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            clean += character;
            clean += text[++i];
        } else if (character.isSurrogate()) {
            clean += QChar(QChar::ReplacementCharacter);
        } else if (isBidirectionalControl(character)) {
            continue;
        } else if (isLineBreak(character)) {
            clean += u'\n';
        } else {
            clean += character.category() == QChar::Other_Control ? QChar(u' ') : character;
        }
    }
    return clean;
}

/// Never between the halves of a surrogate pair.
QString cut(const QString &text, qsizetype longest)
{
    if (text.size() <= longest) {
        return text;
    }
    const qsizetype end = text[longest].isLowSurrogate() ? longest - 1 : longest;
    return text.first(end).trimmed() + ellipsis;
}

/// What may still be shown of a text that can be huge, with enough left over to notice that it is cut.
QStringView beginning(const QString &text, qsizetype longest)
{
    return QStringView(text).first(std::min(text.size(), 4 * longest));
}

} // namespace

QString notificationText::title(const QString &text)
{
    return cut(cleaned(beginning(text, longestTitle)).simplified(), longestTitle);
}

QString notificationText::body(const QString &text, BodyFormat format)
{
    QString clean = QString(beginning(text, longestBody).toString())
                        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    clean = cut(cleaned(clean), longestBody);
    if (format == BodyFormat::Plain) {
        return clean;
    }
    return clean.toHtmlEscaped().replace(u'\'', QStringLiteral("&apos;"));
}
