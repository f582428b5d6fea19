#include "BookmarkData.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>

namespace {

constexpr quint32 magicWord = 0x4442424D; // "DBBM"
constexpr quint16 currentVersion = 1;
constexpr auto streamVersion = QDataStream::Qt_6_4;
constexpr auto checksumMethod = QCryptographicHash::Sha256;

std::unexpected<Error> damaged()
{
    return std::unexpected(Error{
        .domain = Bookmark::errorDomain,
        .code = Bookmark::Damaged,
        .localizedDescription = QCoreApplication::translate("Bookmark", "The bookmark is damaged"),
    });
}

std::unexpected<Error> newerVersion()
{
    return std::unexpected(Error{
        .domain = Bookmark::errorDomain,
        .code = Bookmark::NewerVersion,
        .localizedDescription = QCoreApplication::translate(
            "Bookmark", "The bookmark was made by a newer version of this program"),
    });
}

} // namespace

QByteArray BookmarkData::encoded() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << magicWord << currentVersion << quint8(origin == Bookmark::Origin::PickedByUser) << path
           << identity.fileSystem << identity.inode << quint8(identity.birthNs.has_value())
           << identity.birthNs.value_or(0) << identity.handle;
    return bytes + QCryptographicHash::hash(bytes, checksumMethod);
}

Result<BookmarkData> BookmarkData::decode(const QByteArray &bytes)
{
    const qsizetype length = bytes.size() - QCryptographicHash::hashLength(checksumMethod);
    if (length <= 0) {
        return damaged();
    }
    const auto content = QByteArray::fromRawData(bytes.constData(), length);
    if (QCryptographicHash::hash(content, checksumMethod) != QByteArrayView(bytes).sliced(length)) {
        return damaged();
    }

    QDataStream stream(content);
    stream.setVersion(streamVersion);
    quint32 magic = 0;
    quint16 version = 0;
    stream >> magic >> version;
    if (magic != magicWord || version == 0) {
        return damaged();
    }
    if (version > currentVersion) {
        return newerVersion();
    }
    BookmarkData data;
    quint8 pickedByUser = 0;
    quint8 hasBirth = 0;
    qint64 birthNs = 0;
    stream >> pickedByUser >> data.path >> data.identity.fileSystem >> data.identity.inode >> hasBirth >>
        birthNs >> data.identity.handle;
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || !data.path.startsWith('/')) {
        return damaged();
    }
    data.origin = pickedByUser != 0 ? Bookmark::Origin::PickedByUser : Bookmark::Origin::Automatic;
    if (hasBirth != 0) {
        data.identity.birthNs = birthNs;
    }
    return data;
}
