#pragma once

#include <QStringList>
#include <QTemporaryFile>

/// Takes what the program writes to standard output, for as long as it lives, and hands it out line by line.
/// At its end all of it goes where it would have gone, because the test framework writes there too.
class CapturedOutput final {
public:
    CapturedOutput();
    ~CapturedOutput();
    Q_DISABLE_COPY_MOVE(CapturedOutput)

    /// The program's complete lines so far, without their line ends; not those of the test framework.
    [[nodiscard]] QStringList lines() const;

    [[nodiscard]] qsizetype count(const QString &line) const { return lines().count(line); }

    [[nodiscard]] bool contains(const QString &line) const { return lines().contains(line); }

private:
    [[nodiscard]] QByteArray contents() const;

    QTemporaryFile m_file;
    int m_originalOutput;
};
