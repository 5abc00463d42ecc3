// gramoscope-devices: the sound devices and MIDI inputs that the machine offers now, as the lines that
// config.ini takes.

#include "model/constants.h"
#include "module/qmidiin.h"
#include "state/devicecatalogue.h"
#include "state/pastedtext.h"
#include "state/pathfile.h"
#include "state/settingmixer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"gramoscope-devices"_s);
    QCoreApplication::setApplicationVersion(Constant::applicationVersion);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Lists the sound devices and the MIDI inputs that Gramo Scope can use now, as the lines that "
        "config.ini takes: one a device and channel place, one a MIDI input."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    if (!parser.parse(application.arguments()) || !parser.positionalArguments().isEmpty()) {
        const QString why = parser.errorText().isEmpty() ? u"It takes no arguments."_s : parser.errorText();
        QTextStream(stderr) << "gramoscope-devices: " << why << " See --help." << Qt::endl;
        return 2;
    }
    if (parser.isSet(u"help"_s) || parser.isSet(u"help-all"_s)) {
        parser.showHelp();
    }
    if (parser.isSet(u"version"_s)) {
        parser.showVersion();
    }

    onlyReadDataFolder();
    const SettingMixer mixer;
    const std::vector<DeviceDescription> devices = presentDevices();
    QTextStream out(stdout);
    for (const auto& [title, direction] : {std::pair{"inputs"_L1, ModelAudioDeviceInfo::AUDIO_INPUT},
                                           std::pair{"outputs"_L1, ModelAudioDeviceInfo::AUDIO_OUTPUT}}) {
        out << title << Qt::endl;
        const QStringList entries = deviceStrings(devices, direction, mixer);
        for (const QString& entry : entries) {
            if (!entry.isEmpty() && !entry.startsWith("-----"_L1)) {
                out << "  " << settingsText(entry) << Qt::endl;
            }
        }
    }
    out << "MIDI inputs" << Qt::endl;
    const QStringList ports = QMidiIn().devices();
    for (const QString& port : ports) {
        out << "  " << settingsText(port) << Qt::endl;
    }
    return 0;
}
