#include "SecurityScopedAccess.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <QDir>
#include <QFile>

#include <atomic>
#include <climits>
#include <memory>
#include <utility>

namespace {

// What accesses share; nothing waits for it.
std::atomic<int> accessCount = 0; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// Whoever reads it while another access takes its place still has a whole one. Never destroyed: a thread
/// that hangs on a disk may outlive everything else.
std::atomic<std::shared_ptr<const SecurityScopedAccess>> &keptAccess()
{
    static auto *const access = new std::atomic<std::shared_ptr<const SecurityScopedAccess>>;
    return *access;
}

bool isOnHomeVolume(int descriptor)
{
    const auto folder = FileStatus::ofDescriptor(descriptor);
    const auto home = FileStatus::ofTarget(QDir::homePath());
    return folder && home && folder->device == home->device;
}

} // namespace

std::optional<SecurityScopedAccess> SecurityScopedAccess::start(const QUrl &folder)
{
    FileDescriptor descriptor(
        ::open(nativePath(folder.toLocalFile()).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    // Asked of the open folder, so that the answer is about the one that is held.
    if (!descriptor.isValid() || ::faccessat(descriptor.get(), ".", R_OK | X_OK, 0) != 0) {
        return std::nullopt;
    }
    return SecurityScopedAccess(descriptor.release());
}

SecurityScopedAccess::SecurityScopedAccess(int descriptor) : m_descriptor(descriptor)
{
    accessCount.fetch_add(1, std::memory_order_relaxed);
}

SecurityScopedAccess::SecurityScopedAccess(SecurityScopedAccess &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_isActive(std::exchange(other.m_isActive, false))
{
}

SecurityScopedAccess &SecurityScopedAccess::operator=(SecurityScopedAccess &&other) noexcept
{
    // What was held here is stopped at once and not when `other` goes.
    SecurityScopedAccess taken(std::move(other));
    std::swap(m_descriptor, taken.m_descriptor);
    std::swap(m_isActive, taken.m_isActive);
    return *this;
}

SecurityScopedAccess::~SecurityScopedAccess()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
    if (m_isActive) {
        accessCount.fetch_sub(1, std::memory_order_relaxed);
    }
}

QUrl SecurityScopedAccess::currentUrl() const
{
    if (m_descriptor < 0) {
        return {};
    }
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(m_descriptor);
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const auto length = ::readlink(link.constData(), target.data(), size_t(target.size()));
    if (length <= 0) {
        return {};
    }
    target.truncate(length);
    return QUrl::fromLocalFile(QFile::decodeName(target));
}

void SecurityScopedAccess::keep(std::optional<SecurityScopedAccess> access)
{
    if (access && !isOnHomeVolume(access->m_descriptor)) {
        ::close(std::exchange(access->m_descriptor, -1));
    }
    keptAccess().store(access ? std::make_shared<const SecurityScopedAccess>(std::move(*access)) : nullptr);
}

QUrl SecurityScopedAccess::keptUrl()
{
    const auto access = keptAccess().load();
    return access ? access->currentUrl() : QUrl();
}

int SecurityScopedAccess::activeCount()
{
    return accessCount.load(std::memory_order_relaxed);
}
