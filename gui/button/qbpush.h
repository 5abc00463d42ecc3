#pragma once

#include "qbpicture.h"

/// A push button with one picture.
class QBPush : public QBPicture {
    Q_OBJECT
public:
    explicit QBPush(const QString& picture, QWidget* parent = nullptr);

Q_SIGNALS:
    void s_push();

public Q_SLOTS:
    void mouseClick();
    void setControlEnabled(bool enabled);
};
