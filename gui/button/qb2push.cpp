#include "qb2push.h"

QB2Push::QB2Push(const QString& picture_off, const QString& picture_on, QWidget* parent)
    : QBPicture(side, parent), m_pictureOff(picture_off), m_pictureOn(picture_on) {
    connect(this, &QPushButton::clicked, this, &QB2Push::mouseClick);
    showState();
}

void QB2Push::setChecked(bool checked) {
    if (checked != m_checked) {
        m_checked = checked;
        showState();
    }
}

void QB2Push::checked() {
    setChecked(true);
}

void QB2Push::unchecked() {
    setChecked(false);
}

void QB2Push::mouseClick() {
    Q_EMIT s_push();
}

void QB2Push::changePicture(QString picture_off, QString picture_on) {
    m_pictureOff = picture_off;
    m_pictureOn = picture_on;
    showState();
}

void QB2Push::showState() {
    showPicture(m_checked ? m_pictureOn : m_pictureOff);
}
