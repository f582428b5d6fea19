#include "RunningDecodes.h"

#include <algorithm>

namespace {

/// In one folder: each holds a thread until the mount is back.
constexpr int mostHanging = 4;

} // namespace

bool RunningDecodes::mayBegin(const QString &folder) const
{
    int active = 0;
    int hanging = 0;
    for (const Decode &decode : m_decodes) {
        if (decode.folder == folder) {
            ++(decode.hangs ? hanging : active);
        }
    }
    return hanging == 0 || (active == 0 && hanging < mostHanging);
}

void RunningDecodes::begin(quint64 decode, const QString &folder)
{
    m_decodes.insert(decode, {.folder = folder, .deadline = QDeadlineTimer(m_limit)});
}

RunningDecodes::Outcome RunningDecodes::finish(quint64 decode)
{
    return m_decodes.take(decode).hangs ? Outcome::AfterHanging : Outcome::InTime;
}

int RunningDecodes::findHanging()
{
    int found = 0;
    for (Decode &decode : m_decodes) {
        if (!decode.hangs && decode.deadline.hasExpired()) {
            decode.hangs = true;
            ++found;
        }
    }
    return found;
}

int RunningDecodes::activeCount() const
{
    return static_cast<int>(std::ranges::count(m_decodes, false, &Decode::hangs));
}

std::optional<std::chrono::milliseconds> RunningDecodes::untilNextHangs() const
{
    std::optional<std::chrono::milliseconds> least;
    for (const Decode &decode : m_decodes) {
        const std::chrono::milliseconds left(decode.deadline.remainingTime());
        if (!decode.hangs && (!least || left < *least)) {
            least = left;
        }
    }
    return least;
}
