#include "gsettings.h"

#include "escapedCharacter.h"
#include "processEnvironment.h"

#include <QProcess>

namespace {

constexpr int answerMilliseconds = 1000;

/// How many hexadecimal digits follow the letter in an escape of GVariant's text format; 0 for other escapes.
qsizetype digitsOfEscape(QChar letter)
{
    return letter == u'u' ? 4 : letter == u'U' ? 8 : 0;
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
            text += escapedCharacter(value[i]);
        }
    }
    return text;
}

} // namespace

std::expected<QByteArray, gsettings::Failure>
gsettings::read(const QString &schema, const QString &key, const QString &path)
{
    QProcess tool;
    tool.setProcessEnvironment(processEnvironment::forChildren());
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.setStandardInputFile(QProcess::nullDevice());
    const QString schemaAtPath = path.isEmpty() ? schema : QString(schema + u':' + path);
    tool.start(QStringLiteral("gsettings"), {QStringLiteral("get"), schemaAtPath, key});
    if (!tool.waitForFinished(answerMilliseconds) && tool.state() != QProcess::NotRunning) {
        tool.kill();
        tool.waitForFinished(answerMilliseconds);
        return std::unexpected(Failure::NoAnswer);
    }
    if (tool.error() == QProcess::FailedToStart || tool.exitStatus() != QProcess::NormalExit ||
        tool.exitCode() != 0) {
        return std::unexpected(Failure::NotInstalled);
    }
    return tool.readAllStandardOutput().trimmed();
}

std::optional<QString> gsettings::asString(const QByteArray &value)
{
    return unquoted(QString::fromUtf8(value));
}

std::optional<bool> gsettings::asBoolean(const QByteArray &value)
{
    if (value == "true") {
        return true;
    }
    return value == "false" ? std::optional(false) : std::nullopt;
}

std::optional<bool> gsettings::boolean(const QString &schema, const QString &key, const QString &path)
{
    const auto value = read(schema, key, path);
    return value ? asBoolean(*value) : std::nullopt;
}
