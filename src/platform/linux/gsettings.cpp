#include "gsettings.h"

#include "processEnvironment.h"

#include <QProcess>

namespace {

constexpr int answerMilliseconds = 1000;

/// What the tool prints for the key: the value in GVariant's text format. Empty if it fails.
QByteArray printedValue(const QString &schema, const QString &key, const QString &path)
{
    QProcess tool;
    tool.setProcessEnvironment(processEnvironment::forChildren());
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.setStandardInputFile(QProcess::nullDevice());
    const QString schemaAtPath = path.isEmpty() ? schema : QString(schema + u':' + path);
    tool.start(QStringLiteral("gsettings"), {QStringLiteral("get"), schemaAtPath, key});
    if (!tool.waitForFinished(answerMilliseconds)) {
        tool.kill();
        tool.waitForFinished(answerMilliseconds);
        return {};
    }
    const bool isAnswered = tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
    return isAnswered ? tool.readAllStandardOutput().trimmed() : QByteArray();
}

/// How many hexadecimal digits follow the letter in an escape of GVariant's text format; 0 for other escapes.
qsizetype digitsOfEscape(QChar letter)
{
    return letter == u'u' ? 4 : letter == u'U' ? 8 : 0;
}

QString controlCharacter(QChar letter)
{
    switch (letter.unicode()) {
    case 'a':
        return QStringLiteral("\a");
    case 'b':
        return QStringLiteral("\b");
    case 'f':
        return QStringLiteral("\f");
    case 'n':
        return QStringLiteral("\n");
    case 'r':
        return QStringLiteral("\r");
    case 't':
        return QStringLiteral("\t");
    case 'v':
        return QStringLiteral("\v");
    default:
        // A quote or a backslash, which stands for itself.
        return letter;
    }
}

/// The text of a string in GVariant's text format, which is quoted with either of the two quotes.
std::optional<QString> unquoted(const QString &value)
{
    if (value.size() < 2 || (value.front() != u'\'' && value.front() != u'"') ||
        value.back() != value.front()) {
        return std::nullopt;
    }
    QString text;
    const qsizetype end = value.size() - 1;
    for (qsizetype i = 1; i < end; ++i) {
        if (value[i] != u'\\' || i + 1 == end) {
            text += value[i];
            continue;
        }
        ++i;
        if (const qsizetype digits = digitsOfEscape(value[i]); digits != 0) {
            constexpr int hexadecimal = 16;
            const char32_t character = value.mid(i + 1, digits).toUInt(nullptr, hexadecimal);
            text += QString::fromUcs4(&character, 1);
            i += digits;
        } else {
            text += controlCharacter(value[i]);
        }
    }
    return text;
}

} // namespace

std::optional<QString> gsettings::string(const QString &schema, const QString &key, const QString &path)
{
    return unquoted(QString::fromUtf8(printedValue(schema, key, path)));
}

std::optional<bool> gsettings::boolean(const QString &schema, const QString &key, const QString &path)
{
    const QByteArray value = printedValue(schema, key, path);
    if (value == "true") {
        return true;
    }
    return value == "false" ? std::optional(false) : std::nullopt;
}
