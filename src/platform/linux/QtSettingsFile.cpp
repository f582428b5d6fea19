#include "QtSettingsFile.h"

#include "FunctionRef.h"
#include "escapedCharacter.h"
#include "settingsFile.h"

namespace {

constexpr int hexadecimal = 16;

bool isHexadecimalDigit(QChar character)
{
    return character.unicode() < 0x80 && QStringView(u"0123456789abcdefABCDEF").contains(character);
}

/// The text of a value: quotes are left out, and `\x` has as many hexadecimal digits as follow, which are one
/// UTF-16 unit.
QString textOf(const QString &value)
{
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'"') {
            continue;
        }
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        ++i;
        if (value[i] != u'x') {
            text += escapedCharacter(value[i]);
            continue;
        }
        qsizetype end = i + 1;
        while (end < value.size() && isHexadecimalDigit(value[end])) {
            ++end;
        }
        text += QChar(QStringView(value).sliced(i + 1, end - i - 1).toUShort(nullptr, hexadecimal));
        i = end - 1;
    }
    return text;
}

/// Hands over what stands left and right of the first `=` of each entry in the group below a line that is
/// `header`, in their order and without the blanks around them. Comments (`#`, `;`) and other lines are
/// passed over.
void visitEntries(
    QByteArrayView contents, QByteArrayView header,
    FunctionRef<void(QByteArrayView key, QByteArrayView value)> visitor)
{
    bool isInGroup = false;
    for (qsizetype begin = 0; begin < contents.size();) {
        const qsizetype found = contents.indexOf('\n', begin);
        const qsizetype end = found < 0 ? contents.size() : found;
        const QByteArrayView line = contents.sliced(begin, end - begin).trimmed();
        begin = end + 1;
        if (line.startsWith('[')) {
            isInGroup = line == header;
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (isInGroup && equals > 0 && !line.startsWith('#') && !line.startsWith(';')) {
            visitor(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
}

} // namespace

std::optional<QString> readQtSettingsEntry(const QString &path, const QString &group, const QString &key)
{
    const QByteArray header = '[' + group.toLatin1() + ']';
    const QByteArray wanted = key.toLatin1();
    std::optional<QString> entry;
    const QByteArray contents = settingsFile::contents(path);
    visitEntries(contents, header, [&](QByteArrayView name, QByteArrayView value) {
        if (name == wanted) {
            entry = textOf(QString::fromUtf8(value));
        }
    });
    return entry;
}
