#pragma once

#include <QColor>
#include <QObject>

#include <memory>
#include <optional>

class PortalSettings;

/// How the user wants programs to look: light or dark, accent colour, less motion, more contrast.
///
/// From the desktop's settings portal, which is asked without waiting and may come later, go or change its
/// mind; what it doesn't say comes from the application's palette (light or dark) or isn't wished. Main
/// thread, after the application object exists.
class Appearance final : public QObject {
    Q_OBJECT

public:
    enum class ColorScheme { Light, Dark };

    /// The program's one; goes with the application object.
    static Appearance &shared();

    explicit Appearance(QObject *parent = nullptr);
    ~Appearance() override;
    Q_DISABLE_COPY_MOVE(Appearance)

    [[nodiscard]] ColorScheme colorScheme() const { return m_current.colorScheme; }

    /// None: the user has chosen none, or the desktop doesn't tell.
    [[nodiscard]] std::optional<QColor> accentColor() const { return m_current.accentColor; }

    [[nodiscard]] bool reducesMotion() const { return m_current.reducesMotion; }

    [[nodiscard]] bool increasesContrast() const { return m_current.increasesContrast; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// One of the above has a new value.
    void changed();

private:
    struct Values {
        ColorScheme colorScheme = ColorScheme::Light;
        std::optional<QColor> accentColor;
        bool reducesMotion = false;
        bool increasesContrast = false;

        bool operator==(const Values &) const = default;
    };

    [[nodiscard]] Values wished() const;
    void update();

    std::unique_ptr<PortalSettings> m_portal;
    Values m_current;
};
