#include "CapturedOutput.h"

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
}

QStringList CapturedOutput::lines() const
{
    QFile file(m_file.fileName());
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Can't read the captured output");
    }
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    lines.removeLast();
    return lines;
}
