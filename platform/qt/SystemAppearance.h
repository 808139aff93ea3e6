#pragma once

#include <QObject>

#include <memory>

class QDBusConnection;

namespace tessel::qt {

class DesktopSettings;

/// How the user wants programs to look, as the desktop tells it, and whenever that changes. TESSELDRIVE_TEXT_SCALE in
/// the environment takes the text size's place, and TESSELDRIVE_DARK, 1 or 0, that of the colours.
class SystemAppearance final : public QObject {
    Q_OBJECT

public:
    SystemAppearance();
    ~SystemAppearance() override;

    /// Asks the desktop, and follows its answers. Until then the look is that of the last time.
    void followDesktop(const QDBusConnection& bus);

    [[nodiscard]] bool isDark() const { return isDark_; }
    [[nodiscard]] double textScale() const { return textScale_; } ///< from 1 to 2

    bool eventFilter(QObject*, QEvent*) override;

signals:
    void changed();
    /// The system's font may be another one; told before `changed`.
    void fontChanged();

private:
    void read();
    void desktopChanged();

    std::unique_ptr<DesktopSettings> desktop_;
    bool isDark_ = false;
    double textScale_ = 1;
};

} // namespace tessel::qt
