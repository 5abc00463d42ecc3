#include "qbpicture.h"

#include "state/pathfile.h"

#include <QIcon>

QBPicture::QBPicture(int iconSide, QWidget* parent) : QPushButton(parent), m_iconSide(iconSide) {
    setFixedSize(side, side);
}

void QBPicture::describe(const QString& text) {
    setToolTip(text);
    setAccessibleName(text);
}

void QBPicture::showPicture(const QString& name) {
    setIcon(QIcon(pathIcon(name)));
    setIconSize(QSize(m_iconSide, m_iconSide));
}
