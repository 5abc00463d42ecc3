#include "model/constants.h"
#include "module/connection.h"
#include "module/midithread.h"
#include "module/quitsignals.h"
#include "state/pathfile.h"
#include "state/portaudiosession.h"
#include "state/setting.h"
#include "state/singleton.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>
#include <QStyleFactory>

#include <portaudio.h>

#include <cstdio>
#include <cstdlib>

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

    int result = 0;
    {
        Connection connection; // on 64-byte alignment, which its rings ask for
        connection.showMaximized();
        result = QApplication::exec();
    }
    if (PortAudioSession::blocked() || MidiThread::leftBehind()) {
        // A thread hangs below a library whose server has gone or stands still, and what the libraries do at
        // a process's end would wait for it or fall over it. All that the user made is written by now.
        Singleton::instance().setting()->save();
        std::fflush(nullptr);
        std::_Exit(result);
    }
    return result;
}
