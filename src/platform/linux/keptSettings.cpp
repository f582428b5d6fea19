#include "keptSettings.h"

#include "FileStatus.h"
#include "UserDirectories.h"
#include "gsettings.h"

#include <QHash>

#include <array>
#include <atomic>
#include <memory>

namespace {

/// What changes when a database file is written, in place or by another file that takes its name. All zero
/// if there is none.
struct FileState {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;

    bool operator==(const FileState &) const = default;
};

struct DatabaseState {
    QString folder;
    std::array<FileState, 2> files;

    bool operator==(const DatabaseState &) const = default;
};

/// Never changed once it is published.
struct Answers {
    DatabaseState database;
    /// By schema and key; empty is one that isn't installed.
    QHash<QString, std::optional<QByteArray>> values;
};

FileState stateOf(const QString &path)
{
    const auto status = FileStatus::ofTarget(path);
    if (!status) {
        return {};
    }
    return {
        .device = status->device,
        .inode = status->inode,
        .size = status->size,
        .modifiedNs = status->modifiedNs,
        .changedNs = status->changedNs,
    };
}

DatabaseState databaseState()
{
    const QString folder = configurationFolder();
    return {
        .folder = folder,
        .files =
            {stateOf(folder + QStringLiteral("/dconf/user")),
             stateOf(folder + QStringLiteral("/glib-2.0/settings/keyfile"))},
    };
}

std::atomic<std::shared_ptr<const Answers>> &publishedAnswers()
{
    // Never destroyed: a thread that hangs on a disk may outlive everything else.
    static auto *const answers = new std::atomic<std::shared_ptr<const Answers>>;
    return *answers;
}

/// The value in GVariant's text format; empty if it isn't installed or couldn't be asked for.
std::optional<QByteArray> answer(const QString &schema, const QString &key)
{
    // Taken before the question: a change while it is asked counts as one after the answer.
    const DatabaseState database = databaseState();
    const QString question = schema + u' ' + key;
    const auto known = publishedAnswers().load();
    const bool isUpToDate = known != nullptr && known->database == database;
    if (isUpToDate) {
        if (const auto found = known->values.constFind(question); found != known->values.cend()) {
            return *found;
        }
    }
    const auto read = gsettings::read(schema, key);
    if (!read && read.error() == gsettings::Failure::NoAnswer) {
        return std::nullopt;
    }
    const std::optional<QByteArray> value = read ? std::optional(*read) : std::nullopt;
    Answers next{
        .database = database,
        .values = isUpToDate ? known->values : QHash<QString, std::optional<QByteArray>>()};
    next.values.insert(question, value);
    // Of two threads that ask at once, one answer may be lost: then it is asked for again.
    publishedAnswers().store(std::make_shared<const Answers>(std::move(next)));
    return value;
}

} // namespace

std::optional<QString> keptSettings::string(const QString &schema, const QString &key)
{
    const auto value = answer(schema, key);
    return value ? gsettings::asString(*value) : std::nullopt;
}

std::optional<bool> keptSettings::boolean(const QString &schema, const QString &key)
{
    const auto value = answer(schema, key);
    return value ? gsettings::asBoolean(*value) : std::nullopt;
}
