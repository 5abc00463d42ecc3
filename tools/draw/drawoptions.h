#pragma once
// The command line of gramoscope-draw.

#include "model/modeldisplay.h"
#include "model/modelgraph.h"
#include "model/modelshini.h"

#include <QCommandLineParser>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

/// How a curve looks where the fader is closed.
enum class ClosedFader { Shown, Hidden, Inverted };

/// What the user asked for; all values are in range. What is left open keeps the program's default.
struct DrawOptions {
    static constexpr int smallestSide = 64; ///< pixels of the graph
    static constexpr int largestSide = 16384;
    static constexpr double smallestScale = 0.5;
    static constexpr double largestScale = 8.0;
    static constexpr int largestImageSide = 32767;        ///< device pixels
    static constexpr double mostImagePixels = 64'000'000; ///< device pixels; four bytes each, some times over
    static constexpr double slowest = 1.0;                ///< beats a minute
    static constexpr double fastest = 1000.0;
    static constexpr double furthestBeat = 1'000'000.0;
    static constexpr double fewestBeats = 1.0;   ///< a graph shows more than this
    static constexpr double mostBeats = 36000.0; ///< and less than this

    QString take;
    QString reference; ///< empty: none
    QString phrasing;  ///< empty: none
    QString wave;      ///< empty: none
    QString output;

    ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA;
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    std::optional<ModelShini::EnumShini> shini;
    std::optional<ClosedFader> fader;
    std::optional<int> width; ///< of a curve that sounds, pixels
    bool disc = false;
    std::optional<bool> direct;
    std::optional<bool> grid;
    std::optional<bool> logo;

    std::optional<double> bpm;
    std::optional<double> rate;   ///< Hz
    double from = 0.0;            ///< beat at the left edge
    std::optional<double> beats;  ///< from there to the right edge; none: the whole take
    std::optional<double> cursor; ///< beat; none: out of view
    QSize size{1900, 500};        ///< pixels of the graph
    double scale = 1.0;           ///< device pixels a pixel

    QSize imageSize() const { return (QSizeF(size) * scale).toSize(); }
    QStringList inputs() const; ///< the files to read
};

/// Reads the arguments. It looks at no file, prints nothing and leaves no process.
class DrawOptionsParser {
public:
    enum class Result { Draw, Help, Version, Wrong };

    DrawOptionsParser();
    /// `arguments` begin with the program's name.
    Result parse(const QStringList& arguments);
    const DrawOptions& options() const { return m_options; } ///< after Draw
    const QString& error() const { return m_error; }         ///< after Wrong
    QString helpText() const { return m_parser.helpText(); }

private:
    bool readFiles();
    bool readLook();
    bool readTime();
    bool readSize();

    /// What `option` is among `choices`; none, with a message, for anything else.
    std::optional<qsizetype> choice(const QString& option, const QStringList& choices);
    template <typename Switch> bool onOff(const QString& option, Switch& value);
    bool number(const QString& option, double low, double high, double& value);
    bool number(const QString& option, double low, double high, std::optional<double>& value);
    bool fail(const QString& message);

    QCommandLineParser m_parser;
    DrawOptions m_options;
    QString m_error;
};
