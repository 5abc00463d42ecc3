#include "timecodechoice.h"

#include "mode.h"
#include "model/enumtext.h"
#include "model/modeltimecode.h"

void applyTimecodeChoice(const QString& timecode, Mode& mode) {
    if (timecode == enumText(ModelTimecode::serato_sideA_FullDVS) ||
        timecode == enumText(ModelTimecode::serato_sideB_FullDVS)) {
        mode.modeFullDVS_on();
    } else {
        mode.modeFullDVS_off();
    }
}
