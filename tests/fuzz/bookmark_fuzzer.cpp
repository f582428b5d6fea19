// Bookmarks come from a file that anybody may have written. Of the inputs, a third is given as it is, a third
// with a right checksum behind it, so that what it protects is reached too, and a third is a folder's path in
// an otherwise sound bookmark.

#include "Bookmark.h"
#include "BookmarkData.h"

#include <QCryptographicHash>

#include <cstdint>
#include <cstdlib>

namespace {

/// What was understood must mean the same when it is written and read again.
void checkRoundTrip(const QByteArray &bookmark)
{
    const auto data = BookmarkData::decode(bookmark);
    if (data && BookmarkData::decode(data->encoded())->encoded() != data->encoded()) {
        std::abort();
    }
}

void checkAgreement(const QByteArray &bookmark)
{
    const auto resolved = Bookmark::resolve(bookmark);
    const auto picked = Bookmark::pickedFolder(bookmark);
    const bool isPicked = Bookmark::origin(bookmark) == Bookmark::Origin::PickedByUser;
    if (picked.has_value() != isPicked || (resolved && resolved->pickedByUser != isPicked)) {
        std::abort();
    }
}

QByteArray bookmarkOf(const QByteArray &input)
{
    switch (input.size() % 3) {
    case 0:
        return input;
    case 1:
        return input + QCryptographicHash::hash(input, QCryptographicHash::Sha256);
    default:
        const bool isPicked = input.front() % 2 == 0;
        return BookmarkData{
            .path = '/' + input.sliced(1),
            .origin = isPicked ? Bookmark::Origin::PickedByUser : Bookmark::Origin::Automatic,
            .identity = {.fileSystem = 1, .inode = quint64(input.back()), .birthNs = {}, .handle = {}},
        }
            .encoded();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray bookmark =
        bookmarkOf(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    checkRoundTrip(bookmark);
    checkAgreement(bookmark);
    return 0;
}
