#include "DesktopSession.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QFileInfo>
#include <QProcess>

namespace {

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0) {
        qFatal(
            "%s: %s %s", qPrintable(program), qPrintable(process.errorString()),
            process.readAllStandardError().constData());
    }
}

void write(const QString &path, const QByteArray &contents)
{
    files::makeFolder(QFileInfo(path).path());
    files::write(path, contents);
}

} // namespace

void DesktopSession::start(const TemporaryHome &home) const
{
    const auto atHome = [&home](QByteArray text) { return text.replace("%HOME%", home.path().toUtf8()); };
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    write(home.path() + QStringLiteral("/.config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    for (const QString &folder : folders) {
        files::makeFolder(home.path() + u'/' + folder);
    }
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        write(home.path() + u'/' + file.key(), atHome(file.value()));
    }
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable) {
        qputenv(variable.key().constData(), atHome(variable.value()));
    }
    for (Setting setting : settings) {
        setting.value.replace(QStringLiteral("%HOME%"), home.path());
        PrivateSettings::set(setting);
    }
}

PrivateSettings::PrivateSettings(const QByteArray &schemas)
{
    qputenv("GSETTINGS_BACKEND", "keyfile");
    files::write(
        m_folder.filePath(QStringLiteral("other.gschema.xml")), "<schemalist>" + schemas + "</schemalist>\n");
    run(QStringLiteral("glib-compile-schemas"), {m_folder.path()});
    show();
}

void PrivateSettings::show() const
{
    qputenv("GSETTINGS_SCHEMA_DIR", m_folder.path().toUtf8());
}

void PrivateSettings::hide() const
{
    qunsetenv("GSETTINGS_SCHEMA_DIR");
}

void PrivateSettings::set(const DesktopSession::Setting &setting)
{
    run(QStringLiteral("gsettings"), {QStringLiteral("set"), setting.schema, setting.key, setting.value});
}
