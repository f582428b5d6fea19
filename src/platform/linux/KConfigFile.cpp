#include "KConfigFile.h"

#include "settingsFile.h"

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

/// What stands behind an entry's key: `[$…]` with a letter for each option.
struct Options {
    bool isExpanded = false;
    bool isDeleted = false;
};

/// Empty if the entry has another key, or is the key's value in a certain language.
std::optional<Options> optionsOf(QByteArrayView entry, QByteArrayView key)
{
    if (!entry.startsWith(key)) {
        return std::nullopt;
    }
    const QByteArrayView suffix = entry.sliced(key.size());
    if (suffix.isEmpty()) {
        return Options();
    }
    if (!suffix.startsWith("[$") || !suffix.endsWith(']')) {
        return std::nullopt;
    }
    return Options{.isExpanded = suffix.contains('e'), .isDeleted = suffix.contains('d')};
}

} // namespace

std::optional<QString> readKConfigEntry(const QString &path, const QStringList &groups, const QString &key)
{
    QByteArray header;
    for (const QString &group : groups) {
        header += '[' + group.toUtf8() + ']';
    }
    const QByteArray wanted = key.toUtf8();
    std::optional<QString> entry;
    const QByteArray contents = settingsFile::contents(path);
    settingsFile::visitEntries(contents, header, [&](QByteArrayView name, QByteArrayView value) {
        const auto options = optionsOf(name, wanted);
        if (!options) {
            return;
        }
        const QString text = QString::fromUtf8(unescaped(value));
        entry =
            options->isDeleted ? std::nullopt : std::optional(options->isExpanded ? expanded(text) : text);
    });
    return entry;
}
