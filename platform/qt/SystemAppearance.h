#pragma once

#include <QObject>

namespace tessel::qt {

/// How the user wants programs to look, as the desktop tells it, and whenever that changes. TESSELDRIVE_TEXT_SCALE in
/// the environment takes the text size's place, and TESSELDRIVE_DARK=1 makes it dark.
class SystemAppearance final : public QObject {
    Q_OBJECT

public:
    SystemAppearance();

    [[nodiscard]] bool isDark() const { return isDark_; }
    [[nodiscard]] double textScale() const { return textScale_; } ///< from 1 to 2

    bool eventFilter(QObject*, QEvent*) override;

signals:
    void changed();
    /// The system's font may be another one; told before `changed`.
    void fontChanged();

private:
    void read();

    bool isDark_ = false;
    double textScale_ = 1;
};

} // namespace tessel::qt
