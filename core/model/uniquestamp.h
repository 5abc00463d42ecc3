#pragma once

#include <QString>

/// The date and time now as "yyyyMMdd-hhmmss,zzz", never the same text twice in one run: a call within the
/// same millisecond gets the next free one, so that no two takes share a name. GUI thread.
QString uniqueStamp();
