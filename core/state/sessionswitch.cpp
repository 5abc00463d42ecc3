#include "sessionswitch.h"

#include "mode.h"
#include "recordingloopertraining.h"
#include "singleton.h"

#include <QTimer>

void SessionSwitch::press() {
    const Singleton& shared = Singleton::instance();
    Mode& mode = *shared.mode();
    if (mode.modeTrainingLock()) {
        return;
    }
    if (mode.modeTraining()) {
        mode.modeTraining_off();
        mode.modeMenuRefresh(shared.recordingLooperTraining()->id(),
                             shared.recordingLooperTraining()->tabName());
        return;
    }
    mode.modeTrainingLock_on();
    QTimer::singleShot(armingTime, this, &SessionSwitch::start);
}

void SessionSwitch::start() {
    const Singleton& shared = Singleton::instance();
    shared.mode()->modeTraining_on();
    shared.mode()->modeMenuRefresh(shared.recordingLooperTraining()->id(),
                                   shared.recordingLooperTraining()->tabName());
}
