#include "StatusNotifierItem.h"

#include <QDBusMetaType>
#include <QtEndian>

#include <utility>

namespace {

const QString itemPath = QStringLiteral("/StatusNotifierItem");

StatusNotifierPixmap networkPixmap(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    const qsizetype pixelCount = qsizetype(argb.width()) * argb.height();
    StatusNotifierPixmap pixmap = {
        .width = argb.width(),
        .height = argb.height(),
        .pixels = QByteArray(pixelCount * qsizetype(sizeof(quint32)), Qt::Uninitialized)};
    // A 32-bit image has no padding at the end of its lines.
    qToBigEndian<quint32>(argb.constBits(), pixelCount, pixmap.pixels.data());
    return pixmap;
}

} // namespace

// NOLINTBEGIN(bugprone-return-const-ref-from-parameter): the signature that the toolkit wants.
QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

// NOLINTEND(bugprone-return-const-ref-from-parameter)

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, QObject *parent)
    : QObject(parent),
      m_bus(std::move(bus))
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    m_bus.registerObject(
        itemPath, this,
        QDBusConnection::ExportScriptableInvokables | QDBusConnection::ExportScriptableSignals |
            QDBusConnection::ExportAllProperties);
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_bus.unregisterObject(itemPath);
}

void StatusNotifierItem::setImage(const StatusItemImage &image)
{
    const bool isElsewhere = image.iconThemePath != m_image.iconThemePath;
    m_image = image;
    if (isElsewhere) {
        Q_EMIT NewIconThemePath(m_image.iconThemePath);
    }
    Q_EMIT NewIcon();
}

QList<StatusNotifierPixmap> StatusNotifierItem::iconPixmap() const
{
    QList<StatusNotifierPixmap> pixmaps;
    for (const QImage &image : m_image.pixmaps) {
        pixmaps.append(networkPixmap(image));
    }
    return pixmaps;
}

StatusNotifierToolTip StatusNotifierItem::toolTip() const
{
    return {.iconName = {}, .pixmaps = {}, .title = title(), .text = {}};
}

void StatusNotifierItem::Scroll(int delta, const QString &orientation)
{
    Q_UNUSED(delta)
    Q_UNUSED(orientation)
}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &token)
{
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}
