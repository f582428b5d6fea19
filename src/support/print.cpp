#include "print.h"

#include <unistd.h>

#include <cerrno>

namespace {

/// Characters that would break the line, drive a terminal or turn the text round.
bool isControl(QChar character)
{
    const ushort code = character.unicode();
    const bool isLineSeparator = code == 0x2028 || code == 0x2029;
    const bool isBidirectionalControl = (code >= 0x202A && code <= 0x202E) ||
                                        (code >= 0x2066 && code <= 0x2069) || code == 0x200E ||
                                        code == 0x200F || code == 0x061C;
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || isLineSeparator || isBidirectionalControl;
}

QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (!isControl(character)) {
            result += character;
        } else if (character == u'\n') {
            result += QStringLiteral("\\n");
        } else if (character == u'\t') {
            result += QStringLiteral("\\t");
        } else if (character.unicode() <= 0xFF) {
            result += QStringLiteral("\\x%1").arg(int(character.unicode()), 2, 16, QLatin1Char('0'));
        } else {
            result += QStringLiteral("\\u%1").arg(int(character.unicode()), 4, 16, QLatin1Char('0'));
        }
    }
    return result;
}

} // namespace

void print(const QString &line)
{
    const QByteArray bytes = escaped(line).toUtf8() + '\n';
    ssize_t written = -1;
    do {
        written = ::write(STDOUT_FILENO, bytes.constData(), static_cast<size_t>(bytes.size()));
    } while (written < 0 && errno == EINTR);
}
