#include "model/constants.h"
#include "module/connection.h"
#include "module/quitsignals.h"
#include "state/pathfile.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>
#include <QStyleFactory>

#include <portaudio.h>

Q_DECLARE_METATYPE(PaStreamCallbackTimeInfo)

int main(int argc, char* argv[]) {
    qRegisterMetaType<PaStreamCallbackTimeInfo>();
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    palette.setBrush(QPalette::WindowText, QColor(175, 176, 177));
    QApplication::setPalette(palette);
    QCoreApplication::setApplicationName(
        QString(Constant::applicationName).arg(Constant::applicationVersion));
    QGuiApplication::setWindowIcon(QIcon(pathImage(QStringLiteral("LogoGramoWork.png"))));
    quitOnSystemSignals();

    Connection connection; // on 64-byte alignment, which its rings ask for
    connection.showMaximized();
    return QApplication::exec();
}
