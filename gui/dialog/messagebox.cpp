#include "messagebox.h"

#include <QGuiApplication>
#include <QScreen>

QMessageBox::StandardButton showMessage(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                        QMessageBox::StandardButtons buttons) {
    QMessageBox box(parent);
    box.setWindowFlags(Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint);
    box.setIcon(icon);
    box.setTextFormat(Qt::PlainText); // a path may hold anything
    box.setText(text);
    // A box without buttons gets this one when it is shown: too late for the size hint.
    box.setStandardButtons(buttons == QMessageBox::NoButton ? QMessageBox::Ok : buttons);
    const auto center = [&box](QSize size) {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        box.move(screen.width() / 2 - size.width() / 2, screen.height() / 2 - size.height() / 2);
    };
    center(box.sizeHint());
    box.setModal(true);
    box.show(); // breaks a long text into lines, and is another size then
    center(box.size());
    return static_cast<QMessageBox::StandardButton>(box.exec());
}
