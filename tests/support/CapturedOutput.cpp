#include "CapturedOutput.h"

#include <QRegularExpression>

#include <unistd.h>

#include <cstdio>

CapturedOutput::CapturedOutput()
{
    if (!m_file.open()) {
        qFatal("Can't make a temporary file");
    }
    std::fflush(stdout);
    m_originalOutput = ::dup(STDOUT_FILENO);
    ::dup2(m_file.handle(), STDOUT_FILENO);
}

CapturedOutput::~CapturedOutput()
{
    std::fflush(stdout);
    ::dup2(m_originalOutput, STDOUT_FILENO);
    ::close(m_originalOutput);
    const QByteArray everything = contents();
    std::fwrite(everything.constData(), 1, static_cast<size_t>(everything.size()), stdout);
    std::fflush(stdout);
}

QByteArray CapturedOutput::contents() const
{
    QFile file(m_file.fileName());
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Can't read the captured output");
    }
    return file.readAll();
}

QStringList CapturedOutput::lines() const
{
    static const QRegularExpression frameworkLine(QStringLiteral(
        "^(PASS   |FAIL!  |XFAIL  |XPASS  |SKIP   |QWARN  |QDEBUG |QINFO  |QFATAL ): |^   Loc: |"
        "^   (Actual|Expected) "));
    QStringList lines = QString::fromUtf8(contents()).split(u'\n');
    lines.removeLast();
    lines.removeIf([](const QString &line) { return frameworkLine.match(line).hasMatch(); });
    return lines;
}
