#include "uniquestamp.h"

#include "constants.h"

#include <QDateTime>

QString uniqueStamp() {
    static QDateTime last;
    QDateTime now = QDateTime::currentDateTime();
    if (last.isValid() && now <= last) {
        now = last.addMSecs(1);
    }
    last = now;
    return now.toString(Constant::timeStamp);
}
