#pragma once

#include "qbpicture.h"

/// A button with two pictures. A press only signals: the owner decides which state follows.
class QB2Push : public QBPicture {
    Q_OBJECT
public:
    QB2Push(const QString& picture_off, const QString& picture_on, QWidget* parent = nullptr);

    bool isChecked() const { return m_checked; }

Q_SIGNALS:
    void s_push();

public Q_SLOTS:
    /// Shows the picture of the state, if it differs from the present one.
    void setChecked(bool checked);
    void checked();
    void unchecked();
    void mouseClick();
    /// Takes two other pictures and shows the one of the present state.
    void changePicture(QString picture_off, QString picture_on);

private:
    void showState();

    QString m_pictureOff;
    QString m_pictureOn;
    bool m_checked = false;
};
