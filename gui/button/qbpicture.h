#pragma once

#include <QPushButton>
#include <QString>

/// What all square buttons share: 50 by 50 pixels and a picture of the icon resources. It sends nothing by
/// itself.
class QBPicture : public QPushButton {
    Q_OBJECT
public:
    static constexpr int side = 50;
    static constexpr int smallPicture = 30;

    /// Says what the button is for: its tool tip and its name for assistive programs.
    void describe(const QString& text);

protected:
    /// `iconSide` in pixels.
    QBPicture(int iconSide, QWidget* parent);
    /// Shows a picture by its file name.
    void showPicture(const QString& name);

private:
    int m_iconSide;
};
