#pragma once

#include <QStringList>
#include <QTemporaryFile>

/// Takes what the process writes to standard output, for as long as it lives, and hands it out line by line.
class CapturedOutput final {
public:
    CapturedOutput();
    ~CapturedOutput();
    Q_DISABLE_COPY_MOVE(CapturedOutput)

    /// All complete lines so far, without their line ends.
    [[nodiscard]] QStringList lines() const;

    [[nodiscard]] qsizetype count(const QString &line) const { return lines().count(line); }

    [[nodiscard]] bool contains(const QString &line) const { return lines().contains(line); }

private:
    QTemporaryFile m_file;
    int m_originalOutput;
};
