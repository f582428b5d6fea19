#include "FileCoordinator.h"

#include "FileManager.h"
#include "FileStatus.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2s;
/// Short beside the patience, long beside the microseconds that a look takes.
constexpr auto timeBetweenLooks = 20ms;

/// Whether nobody writes to the file any more before the patience is over.
bool waitForWriters(const QString &path)
{
    const QDeadlineTimer deadline(patience, Qt::PreciseTimer);
    while (FileManager::defaultManager().isOpenForWriting(path)) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::usleep(std::chrono::microseconds(timeBetweenLooks).count());
    }
    return true;
}

} // namespace

Result<void> FileCoordinator::coordinateWritingForDeleting(
    const QUrl &url, const std::function<Result<void>(const QUrl &)> &accessor) const
{
    const QString path = url.toLocalFile();
    const auto status = FileStatus::ofItem(path);
    if (!status) {
        return std::unexpected(status.error());
    }
    if (status->isRegularFile() && !waitForWriters(path)) {
        return std::unexpected(Error{
            .domain = Error::cocoaDomain,
            .code = Error::FileInUse,
            .localizedDescription =
                QCoreApplication::translate("FileCoordinator", "Another program is still writing the file"),
        });
    }
    return accessor(url);
}
