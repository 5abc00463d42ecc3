#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

/// Shows a text in a box without a frame that stays on top in the middle of the primary screen, and waits for
/// the answer. Without `buttons` it has the one that closes it. `parent` lends its style and may be null. GUI
/// thread.
QMessageBox::StandardButton showMessage(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                        QMessageBox::StandardButtons buttons = QMessageBox::NoButton);
