#include "KConfigFile.h"

#include "kconfigText.h"
#include "settingsFile.h"

#include <QStandardPaths>

#include <algorithm>

namespace {

char escapedByte(char letter)
{
    switch (letter) {
    case 's':
        return ' ';
    case 't':
        return '\t';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    default:
        // A backslash or a separator, which stands for itself.
        return letter;
    }
}

QByteArray unescaped(QByteArrayView value)
{
    constexpr qsizetype digits = 2;
    constexpr int hexadecimal = 16;
    QByteArray text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text.append(value[i]);
            continue;
        }
        ++i;
        bool isNumber = false;
        if (value[i] == 'x' && i + digits < value.size()) {
            const char byte =
                char(value.sliced(i + 1, digits).toByteArray().toUShort(&isNumber, hexadecimal));
            if (isNumber) {
                text.append(byte);
                i += digits;
            }
        }
        if (!isNumber) {
            text.append(escapedByte(value[i]));
        }
    }
    return text;
}

bool isPartOfName(QChar character)
{
    return character == u'_' || (character.unicode() < 0x80 && character.isLetterOrNumber());
}

/// With `$NAME` and `${NAME}` replaced by the variable's value; `$$` is a dollar sign.
QString expanded(const QString &text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'$') {
            result += text[i];
            continue;
        }
        const QStringView rest = QStringView(text).sliced(i + 1);
        if (rest.startsWith(u'$')) {
            result += u'$';
            ++i;
            continue;
        }
        const bool hasBraces = rest.startsWith(u'{') && rest.contains(u'}');
        const QStringView name =
            hasBraces ? rest.sliced(1, rest.indexOf(u'}') - 1)
                      : rest.first(std::ranges::find_if_not(rest, isPartOfName) - rest.begin());
        if (name.isEmpty()) {
            result += u'$';
            continue;
        }
        result += qEnvironmentVariable(name.toLatin1().constData());
        i += name.size() + (hasBraces ? 2 : 0);
    }
    return result;
}

QByteArray headerOf(const QStringList &groups)
{
    QByteArray header;
    for (const QString &group : groups) {
        header += '[' + group.toUtf8() + ']';
    }
    return header;
}

/// Empty where the entry is missing or deleted.
std::optional<QString> valueOf(const std::optional<kconfigText::Line> &entry)
{
    if (!entry || entry->options.contains('d')) {
        return std::nullopt;
    }
    const QString text = QString::fromUtf8(unescaped(entry->value));
    return entry->options.contains('e') ? expanded(text) : text;
}

} // namespace

std::optional<QString> readKConfigEntry(const QString &path, const QStringList &groups, const QString &key)
{
    const QByteArray contents = settingsFile::contents(path);
    return valueOf(kconfigText::find(contents, headerOf(groups), key.toUtf8()).entry);
}

KConfigEntry readCascadedKConfigEntry(const QString &fileName, const QStringList &groups, const QString &key)
{
    const QByteArray header = headerOf(groups);
    const QByteArray wanted = key.toUtf8();
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    KConfigEntry entry;
    for (auto folder = folders.crbegin(); folder != folders.crend() && !entry.isImmutable; ++folder) {
        const QByteArray contents = settingsFile::contents(*folder + u'/' + fileName);
        const auto found = kconfigText::find(contents, header, wanted);
        if (found.entry) {
            entry.value = valueOf(found.entry);
        }
        entry.isImmutable = found.isImmutable;
    }
    return entry;
}
