#pragma once

#include <QString>
#include <QStringList>

class Performance;
class Setting;

/// The choices for frames a buffer, as their combo boxes list them.
QStringList bufferChoices();
/// The choices for repaints a second.
QStringList displayFrequencyChoices();

/// `stored` if it is one of `choices`, else the entry at `fallback`.
QString chosenText(const QStringList& choices, const QString& stored, int fallback);
/// The number that a choice stands for; 0.0 for a text that is no 32-bit integer.
double chosenNumber(const QString& text);

/// Gives Performance its buffers and its repaint rate from the settings, so that no stream and no timer meets
/// the zeros of the start. A stored buffer that is not on the list counts as 64 for an input and as 256 for
/// the output, a stored frequency as 30. GUI thread.
void applyStoredPerformance(const Setting& setting, Performance& performance);
