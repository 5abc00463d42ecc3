#include "qbpush.h"

QBPush::QBPush(const QString& picture, QWidget* parent) : QBPicture(smallPicture, parent) {
    connect(this, &QPushButton::clicked, this, &QBPush::mouseClick);
    showPicture(picture);
}

void QBPush::mouseClick() {
    Q_EMIT s_push();
}

void QBPush::setControlEnabled(bool enabled) {
    setEnabled(enabled);
}
