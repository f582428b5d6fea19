#include "fileNameText.h"

#include "toolTips.h"

namespace {

constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

/// U+2400 and on are pictures of the control characters of ASCII, in their order.
constexpr char16_t controlPictures = 0x2400;
constexpr QChar pictureOfDelete(0x2421);

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

QString fileNameText::displayed(const QString &name)
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

QString fileNameText::displayedInSentence(const QString &sentence)
{
    const qsizetype first = sentence.indexOf(u'\'') + 1;
    const qsizetype end = sentence.lastIndexOf(u'\'');
    if (end <= first) {
        return sentence;
    }
    return sentence.first(first) + displayed(sentence.sliced(first, end - first)) + sentence.sliced(end);
}

QString fileNameText::toolTip(const QString &name, const QString &details)
{
    const QString shown = displayed(name);
    return plainTextToolTip(details.isEmpty() ? shown : shown + QChar::LineSeparator + details);
}
