#include "fileUri.h"

#include <QList>

namespace {

bool isUnescaped(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           QByteArrayView("-_.~!$&'()*+,=:@/").contains(byte);
}

} // namespace

QByteArray canonicalPath(const QByteArray &absolutePath)
{
    QByteArrayList parts;
    for (const QByteArray &part : absolutePath.split('/')) {
        if (part == "..") {
            if (!parts.isEmpty()) {
                parts.removeLast();
            }
        } else if (!part.isEmpty() && part != ".") {
            parts.append(part);
        }
    }
    // Exactly two slashes at the beginning stay, as POSIX lets them mean something of their own.
    const bool hasTwoSlashes = absolutePath.startsWith("//") && !absolutePath.startsWith("///");
    return QByteArray(hasTwoSlashes ? "//" : "/") + parts.join('/');
}

QByteArray fileUri(const QByteArray &absolutePath)
{
    constexpr QByteArrayView digits("0123456789ABCDEF");
    QByteArray uri("file://");
    for (const char byte : canonicalPath(absolutePath)) {
        if (isUnescaped(byte)) {
            uri += byte;
        } else {
            const auto value = static_cast<uchar>(byte);
            uri += '%';
            uri += digits[value >> 4];
            uri += digits[value & 0xF];
        }
    }
    return uri;
}
