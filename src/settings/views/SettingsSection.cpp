#include "SettingsSection.h"

#include <QCoreApplication>

#include <utility>

namespace {

constexpr qreal badgeSize = 22;

QString translated(const char *text)
{
    return QCoreApplication::translate("SettingsSection", text);
}

} // namespace

QString settingsSections::title(SettingsSection section)
{
    switch (section) {
    case SettingsSection::General:
        return translated(QT_TRANSLATE_NOOP("SettingsSection", "General"));
    case SettingsSection::Gallery:
        return translated(QT_TRANSLATE_NOOP("SettingsSection", "Gallery"));
    case SettingsSection::About:
        return translated(QT_TRANSLATE_NOOP("SettingsSection", "About"));
    }
    std::unreachable();
}

QString settingsSections::header(SettingsSection section)
{
    switch (section) {
    case SettingsSection::General:
        return {};
    case SettingsSection::Gallery:
        return translated(QT_TRANSLATE_NOOP("SettingsSection", "Library"));
    case SettingsSection::About:
        return translated(QT_TRANSLATE_NOOP("SettingsSection", "Support"));
    }
    std::unreachable();
}

SettingsIconBadge settingsSections::badge(SettingsSection section)
{
    switch (section) {
    case SettingsSection::General:
        return {QStringLiteral("gearshape.fill"), &Theme::gray, badgeSize};
    case SettingsSection::Gallery:
        return {QStringLiteral("photo.stack.fill"), &Theme::blue, badgeSize};
    case SettingsSection::About:
        return {QStringLiteral("info.circle.fill"), &Theme::gray, badgeSize};
    }
    std::unreachable();
}
