#pragma once
// The text constants of the program, once.

#include <QLatin1StringView>
#include <QString>
#include <QUuid>

namespace Constant {

using namespace Qt::Literals::StringLiterals;

namespace Audio {
inline constexpr int STEREO = 2;                   ///< sample pointers a decoder takes, left then right
inline constexpr double defaultSampleRate = 48000; ///< Hz
inline constexpr int defaultChannels = 2;
inline constexpr double secondsPerTurn = 1.8; ///< 33 1/3 rpm
} // namespace Audio

/// What a file may set, beats a minute.
namespace Tempo {
inline constexpr double lowest = 20.0;
inline constexpr double highest = 400.0;
} // namespace Tempo

namespace File {
inline constexpr auto config = "config.ini"_L1;
inline constexpr auto mixer = "MixerWindows.ini"_L1;
inline constexpr auto author = "author.png"_L1;
inline constexpr auto click = "beep1.wav"_L1;
} // namespace File

namespace Extension {
inline constexpr auto css = ".css"_L1;
inline constexpr auto phrasing = ".grp"_L1;
inline constexpr auto package = ".grz"_L1;
inline constexpr auto curve = ".grw"_L1;
inline constexpr auto session = ".grt"_L1;
inline constexpr auto wav = ".wav"_L1;
} // namespace Extension

namespace Folder {
inline constexpr auto userData = "Gramo Scope"_L1; ///< in the user's data location, for program and tools
inline constexpr auto appData = "AppData"_L1;
inline constexpr auto input = "Input"_L1;
inline constexpr auto looper = "Looper"_L1;
inline constexpr auto recording = "Recording"_L1;
inline constexpr auto exported = "Export"_L1;
inline constexpr auto color = "Color"_L1;
inline constexpr auto scratchTools = "Scratch Tools"_L1;
inline constexpr auto css = "Css"_L1;
} // namespace Folder

namespace Resource {
inline constexpr auto icon = ":/Icon/gui/icon/"_L1;
inline constexpr auto image = ":/Image/gui/image/"_L1;
inline constexpr auto translation = ":/translations/"_L1;
inline constexpr auto generate = ":/generate/"_L1;
inline constexpr auto sound = "qrc:/Fx/core/fx/"_L1;
} // namespace Resource

namespace Mixer {
inline constexpr auto name = "name"_L1;
inline constexpr auto inputA = "inputA"_L1;
inline constexpr auto inputB = "inputB"_L1;
inline constexpr auto inputMaster = "inputMaster"_L1;
inline constexpr auto outputA = "outputA"_L1;
inline constexpr auto outputB = "outputB"_L1;
inline constexpr auto outputMaster = "outputMaster"_L1;
inline constexpr auto outputHeadphone = "outputHeadphone"_L1;
inline constexpr auto confInputA = "confInputA"_L1;
inline constexpr auto confInputB = "confInputB"_L1;
inline constexpr auto confInputMaster = "confInputMaster"_L1;
inline constexpr auto confOutputA = "confOutputA"_L1;
inline constexpr auto confOutputB = "confOutputB"_L1;
inline constexpr auto confOutputPlayback = "confOutputPlayback"_L1;
inline constexpr auto confInputMidi = "confInputMidi"_L1;
inline constexpr auto confLearnMidi = "confLearnMidi"_L1;
inline constexpr auto confOptionCutOffSound = "confOptionCutOffSound"_L1;
} // namespace Mixer

namespace Phrasing {
inline constexpr auto root = "Phrasing"_L1;
inline constexpr auto section = "Section"_L1;
inline constexpr auto scratchTools = "scratchTools"_L1;
inline constexpr auto label = "label"_L1;
inline constexpr auto color = "color"_L1;
inline constexpr auto angleStart = "angleStart"_L1;
inline constexpr auto angleEnd = "angleEnd"_L1;
inline constexpr auto name = "name"_L1;
inline constexpr auto defaultName = "Default color"_L1;
} // namespace Phrasing

namespace Looper {
inline constexpr auto defaultTitle = "Regular Training"_L1;
inline constexpr auto defaultAuthor = "K4rTo"_L1;
} // namespace Looper

/// A device string: index, [name], rate, channels p place, host API, label.
inline constexpr auto devicePattern = "(.*)-\\[(.*)\\]-(.*)/(.*)p(.*)-(.*)-(.*)"_L1;
inline constexpr auto timeStamp = "yyyyMMdd-hhmmss,zzz"_L1;
inline constexpr auto crossFaderName = "XFader"_L1;
inline constexpr auto inputPictureA = "switch_a_text.png"_L1;
inline constexpr auto inputPictureB = "switch_b_text.png"_L1;
inline constexpr auto inputPictureAB = "switch_a_b_text.png"_L1;
inline constexpr auto applicationName = "Gramo Works / Scope V%1"_L1;
inline constexpr auto applicationVersion = "2.6.5-2412"_L1;

/// The phrasing called "Default color", the default looper and the activated ids at start.
inline constexpr QUuid defaultId{0x00000001, 0x0002, 0x0003, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x05};

} // namespace Constant
