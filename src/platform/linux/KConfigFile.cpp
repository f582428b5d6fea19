#include "KConfigFile.h"

#include "configurationFile.h"

#include <algorithm>
#include <cctype>

namespace {

bool isHexadecimal(char letter)
{
    return std::isxdigit(static_cast<unsigned char>(letter)) != 0;
}

/// The character that an escape stands for, at the backslash `i`, which moves to the escape's last letter.
char unescaped(QByteArrayView text, qsizetype &i)
{
    constexpr int hexadecimal = 16;
    ++i;
    switch (text[i]) {
    case 's':
        return ' ';
    case 't':
        return '\t';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 'x': {
        const QByteArray digits = text.sliced(i + 1).toByteArray().left(2);
        if (digits.size() == 2 && std::ranges::all_of(digits, isHexadecimal)) {
            i += 2;
            return static_cast<char>(digits.toInt(nullptr, hexadecimal));
        }
        return 'x';
    }
    default:
        return text[i];
    }
}

QString decoded(QByteArrayView text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bytes += text[i] == '\\' && i + 1 < text.size() ? unescaped(text, i) : text[i];
    }
    return QString::fromUtf8(bytes);
}

/// `[Outer][Inner]` as its names; brackets inside a name are escaped.
QStringList groupsOf(QByteArrayView line)
{
    QStringList groups;
    while (line.startsWith('[')) {
        const qsizetype end = line.indexOf(']');
        if (end < 0) {
            break;
        }
        groups.append(decoded(line.sliced(1, end - 1)));
        line = line.sliced(end + 1);
    }
    return groups;
}

/// The key without its mark. One with a language keeps it, so that it equals no plain key.
QString keyOf(QByteArrayView text)
{
    const qsizetype mark = text.indexOf("[$");
    return decoded((mark < 0 ? text : text.first(mark)).trimmed());
}

} // namespace

std::optional<QString> readKConfigEntry(const QString &path, const QStringList &groups, const QString &key)
{
    std::optional<QString> value;
    QStringList current;
    for (const QByteArray &fullLine : configurationFile::contents(path).split('\n')) {
        const QByteArrayView line = QByteArrayView(fullLine).trimmed();
        if (line.startsWith('[')) {
            current = groupsOf(line);
            continue;
        }
        const qsizetype separator = line.indexOf('=');
        if (separator > 0 && !line.startsWith('#') && current == groups &&
            keyOf(line.first(separator)) == key) {
            value = decoded(line.sliced(separator + 1).trimmed());
        }
    }
    return value;
}
