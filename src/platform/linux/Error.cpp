#include "Error.h"

#include <cerrno>
#include <system_error>

namespace {

Error::CocoaCode cocoaCode(int errorNumber, Error::CocoaCode otherwise)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return Error::FileNoSuchFile;
    case EACCES:
    case EPERM:
        return Error::FileNoPermission;
    case EBUSY:
    case ETXTBSY:
        return Error::FileInUse;
    case ENOSPC:
    case EDQUOT:
        return Error::FileWriteOutOfSpace;
    case EROFS:
        return Error::FileWriteVolumeReadOnly;
    default:
        return otherwise;
    }
}

} // namespace

Error Error::fromErrno(int errorNumber, CocoaCode otherwise)
{
    return {
        .domain = cocoaDomain,
        .code = cocoaCode(errorNumber, otherwise),
        .localizedDescription = QString::fromStdString(std::generic_category().message(errorNumber)),
    };
}

QString Error::description() const
{
    return QStringLiteral("Error Domain=%1 Code=%2 \"%3\"")
        .arg(domain, QString::number(code), localizedDescription);
}
