#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QString>

#include <chrono>
#include <optional>

/// Which decodes are under way, and which of them hang: on a file of a dead mount a thread waits for minutes
/// or for good. In the folder of one that hangs no more than one other is under way at a time, and none once
/// several hang, so that the files of other folders find a thread. Main thread.
class RunningDecodes final {
public:
    /// `limit`: how long a decode may take before it counts as hanging.
    explicit RunningDecodes(std::chrono::milliseconds limit) : m_limit(limit) {}

    [[nodiscard]] bool mayBegin(const QString &folder) const;

    /// `decode`: by which it is known from now on.
    void begin(quint64 decode, const QString &folder);

    enum class Outcome { InTime, AfterHanging };
    Outcome finish(quint64 decode);

    /// Answers how many hang that didn't when this was called last.
    int findHanging();

    /// Those that don't hang.
    [[nodiscard]] int activeCount() const;

    [[nodiscard]] int hangingCount() const { return static_cast<int>(m_decodes.size()) - activeCount(); }

    /// The time until one of the active ones counts as hanging; none if none is active.
    [[nodiscard]] std::optional<std::chrono::milliseconds> untilNextHangs() const;

private:
    struct Decode {
        QString folder;
        QDeadlineTimer deadline;
        bool hangs = false;
    };

    std::chrono::milliseconds m_limit;
    QHash<quint64, Decode> m_decodes;
};
