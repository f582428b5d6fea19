#include "FolderAccessCheck.h"

#include "FileAccessManager.h"
#include "NotificationCenter.h"
#include "runInBackground.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QPointer>

#include <utility>

namespace {

/// Those that wait for an answer, by the bookmark that the question under way is about: a folder that never
/// answers takes one thread, however often its state is to be shown.
QHash<QByteArray, QList<QPointer<FolderAccessCheck>>> &waitingChecks()
{
    static QHash<QByteArray, QList<QPointer<FolderAccessCheck>>> checks;
    return checks;
}

} // namespace

FolderAccessCheck::FolderAccessCheck(const FileAccessManager &manager, QObject *parent)
    : QObject(parent),
      m_manager(&manager)
{
    NotificationCenter::defaultCenter().addObserver(
        FileAccessManager::folderAccessGranted, this, [this](const ProcessNotification &) {
            if (m_manager->hasBookmark()) {
                // It has just been read.
                take(true);
            }
            ask();
        });
}

void FolderAccessCheck::ask()
{
    const auto bookmark = m_manager->bookmark();
    if (!bookmark) {
        // An answer that is still to come is about a bookmark that is gone.
        m_askedAbout.reset();
        take(false);
        return;
    }
    if (m_askedAbout == bookmark) {
        m_isAskedAgain = true;
        return;
    }
    // A question about the folder before, whose disk may never answer, keeps nobody waiting.
    m_askedAbout = bookmark;
    auto &waiting = waitingChecks()[*bookmark];
    // The answer to a question that another check has asked may be older than the reason for this one.
    m_isAskedAgain = !waiting.isEmpty();
    waiting.append(this);
    if (!m_isAskedAgain) {
        begin(*bookmark);
    }
}

void FolderAccessCheck::begin(const QByteArray &bookmark)
{
    // The others that wait for it may outlive this one.
    runInBackground(
        QCoreApplication::instance(), BackgroundQueue::Listing,
        [manager = m_manager] { return manager->hasValidAccess(); },
        [bookmark](bool hasAccess) {
            const auto waiting = waitingChecks().take(bookmark);
            for (const auto &check : waiting) {
                if (check) {
                    check->finish(bookmark, hasAccess);
                }
            }
        });
}

void FolderAccessCheck::finish(const QByteArray &bookmark, bool hasAccess)
{
    if (m_askedAbout != bookmark) {
        return;
    }
    m_askedAbout.reset();
    if (std::exchange(m_isAskedAgain, false)) {
        ask();
    } else {
        take(hasAccess);
    }
}

void FolderAccessCheck::take(bool hasAccess)
{
    const bool isAnother = std::exchange(m_lastAnswer, hasAccess) != hasAccess;
    Q_EMIT answered();
    if (isAnother) {
        Q_EMIT changed();
    }
}
