#pragma once

#include <QUrl>

#include <optional>

/// The right to use a folder, held from `start` until the value is destroyed.
///
/// What it really holds is the folder itself, open but unread, so that it is still known after it was
/// moved elsewhere. Whoever starts an access owns it, and several may hold the same folder. One can be kept
/// for the whole program; bookmarks look there for a folder that has moved away. Any thread, without locks.
class SecurityScopedAccess final {
public:
    /// Empty if there is no such folder, or it can't be both read and entered.
    [[nodiscard]] static std::optional<SecurityScopedAccess> start(const QUrl &folder);

    SecurityScopedAccess(SecurityScopedAccess &&other) noexcept;
    SecurityScopedAccess &operator=(SecurityScopedAccess &&other) noexcept;
    SecurityScopedAccess(const SecurityScopedAccess &) = delete;
    SecurityScopedAccess &operator=(const SecurityScopedAccess &) = delete;
    ~SecurityScopedAccess();

    /// Where the held folder is now; a guess to be checked, because a folder that was removed still answers
    /// with its last path. Empty if the system can't say, or the folder isn't held open.
    [[nodiscard]] QUrl currentUrl() const;

    /// Keeps the access for the program, instead of the one that was kept until now; empty keeps none. On
    /// another volume than the home folder's the folder isn't held open meanwhile: its drive can be ejected.
    static void keep(std::optional<SecurityScopedAccess> access);

    /// `currentUrl` of the access that is kept for the program; empty if none is.
    [[nodiscard]] static QUrl keptUrl();

    /// How many accesses the whole program holds at this moment.
    [[nodiscard]] static int activeCount();

private:
    explicit SecurityScopedAccess(int descriptor);

    /// -1 if the folder isn't held open.
    int m_descriptor;
    /// False in a value that was moved from.
    bool m_isActive = true;
};
