#include "PrivateBus.h"

#include <QFile>

namespace {

/// A session bus without the machine's folders of activatable services.
constexpr auto configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%1</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

constexpr auto brokenService = "[D-BUS Service]\nName=%1\nExec=/bin/false\n";

void write(const QString &path, const QString &contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("Can't write %s", qPrintable(path));
    }
    file.write(contents.toUtf8());
}

} // namespace

PrivateBus::PrivateBus(const QStringList &brokenServices)
{
    const QString path = m_folder.filePath(QStringLiteral("bus.conf"));
    write(path, QString::fromLatin1(configuration).arg(m_folder.path()));
    for (const QString &name : brokenServices) {
        write(
            m_folder.filePath(name + QStringLiteral(".service")),
            QString::fromLatin1(brokenService).arg(name));
    }
    m_daemon.start(
        QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + path, QStringLiteral("--nofork"),
                                        QStringLiteral("--print-address=1")});
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead()) {
            qFatal("Can't start dbus-daemon");
        }
    }
    m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
}

PrivateBus::~PrivateBus()
{
    kill();
}

void PrivateBus::kill()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}
