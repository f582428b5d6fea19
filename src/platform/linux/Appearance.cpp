#include "Appearance.h"

#include "PortalSettings.h"

#include <QDBusArgument>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QPointer>

namespace {

const QString appearanceNamespace = QStringLiteral("org.freedesktop.appearance");
const QString gnomeInterfaceNamespace = QStringLiteral("org.gnome.desktop.interface");

bool hasDarkPalette()
{
    constexpr int middle = 128;
    return QGuiApplication::palette().color(QPalette::Window).lightness() < middle;
}

/// The portal's `color-scheme`: 0 is no preference, 1 dark, 2 light.
Appearance::ColorScheme preferredColorScheme(const QVariant &portalValue)
{
    const uint preference = portalValue.toUInt();
    const bool isDark = preference == 1 || (preference != 2 && hasDarkPalette());
    return isDark ? Appearance::ColorScheme::Dark : Appearance::ColorScheme::Light;
}

/// The portal's `accent-color`: red, green and blue from 0 to 1; anything outside means that none is set.
std::optional<QColor> preferredAccentColor(const QVariant &portalValue)
{
    if (portalValue.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = portalValue.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)")) {
        return std::nullopt;
    }
    double red = 0;
    double green = 0;
    double blue = 0;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto isComponent = [](double value) { return value >= 0 && value <= 1; };
    if (!isComponent(red) || !isComponent(green) || !isComponent(blue)) {
        return std::nullopt;
    }
    return QColor::fromRgbF(float(red), float(green), float(blue));
}

} // namespace

Appearance &Appearance::shared()
{
    static QPointer<Appearance> instance;
    if (!instance) {
        instance = new Appearance(qApp);
    }
    return *instance;
}

Appearance::Appearance(QObject *parent)
    : QObject(parent),
      m_portal(std::make_unique<PortalSettings>()),
      m_current(wished())
{
    connect(m_portal.get(), &PortalSettings::changed, this, &Appearance::update);
    qApp->installEventFilter(this);
}

Appearance::~Appearance() = default;

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp) {
        update();
    }
    return false;
}

Appearance::Values Appearance::wished() const
{
    const auto appearance = [this](const QString &key) { return m_portal->value(appearanceNamespace, key); };
    const QVariant animations = m_portal->value(gnomeInterfaceNamespace, QStringLiteral("enable-animations"));
    return {
        .colorScheme = preferredColorScheme(appearance(QStringLiteral("color-scheme"))),
        .accentColor = preferredAccentColor(appearance(QStringLiteral("accent-color"))),
        .reducesMotion = appearance(QStringLiteral("reduced-motion")).toUInt() == 1 ||
                         (animations.isValid() && !animations.toBool()),
        .increasesContrast = appearance(QStringLiteral("contrast")).toUInt() == 1,
    };
}

void Appearance::update()
{
    const Values values = wished();
    if (values != m_current) {
        m_current = values;
        Q_EMIT changed();
    }
}
