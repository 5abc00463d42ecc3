#pragma once
// gramoscope-draw as a program, in surroundings of its own: takes go in as files, pictures come out.

#include <QColor>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

struct TakePoint {
    qint32 time = 0; ///< frames
    double position = 0.0;
    double angle = 0.0; ///< degrees, not reduced
    bool soundOn = true;
};
using Points = std::vector<TakePoint>;

inline constexpr int takeBpm = 120;
inline constexpr int beatFrames = 24000; ///< at 48000 Hz

/// A take of `beats` beats with a point every 240 frames; `change` gets the point's beat and the point.
template <typename Change> Points takeOf(double beats, Change change) {
    Points points;
    for (int i = 0; i <= int(beats * 100); ++i) {
        TakePoint point{i * 240};
        change(i / 100.0, point);
        points.push_back(point);
    }
    return points;
}
inline Points levelTake(double beats = 8.0) {
    return takeOf(beats, [](double, TakePoint&) {});
}

inline QByteArray curveFile(const Points& points, qint32 bpm = takeBpm) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << bpm << qint32(points.size());
    for (const TakePoint& point : points) {
        stream << point.time << point.position << point.angle << qint16(0) << qint8(point.soundOn);
    }
    return bytes;
}

/// A 16-bit stereo sound with a wide wave.
inline QByteArray waveFile(int frames = 48000) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << quint32(36 + 4 * frames);
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32(16) << quint16(1) << quint16(2) << quint32(48000) << quint32(192000) << quint16(4)
           << quint16(16);
    stream.writeRawData("data", 4);
    stream << quint32(4 * frames);
    for (int i = 0; i < frames; ++i) {
        const auto value = qint16(20000.0 * std::sin(i * 0.037));
        stream << value << value;
    }
    return bytes;
}

/// Red up to 90 degrees, blue up to 180, nothing behind that.
inline QByteArray areasFile() {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Phrasing name=\"a\" scratchTools=\"\">\n"
           " <Section label=\"Aah\" color=\"200,0,0\" angleStart=\"0\" angleEnd=\"90\"/>\n"
           " <Section label=\"Fresh\" color=\"0,0,200\" angleStart=\"90\" angleEnd=\"180\"/>\n</Phrasing>\n";
}

struct Drawn {
    int exitCode = -1;
    QString said;
    QString complaint;
    QImage picture;
    bool says(const QString& text) const { return said.contains(text); }
};

/// The program with a home, a temporary folder and a working folder that nobody else uses.
class DrawRun {
public:
    DrawRun() {
        for (const char* name : {"home", "tmp", "work"}) {
            QDir(m_root.path()).mkdir(QString::fromLatin1(name));
        }
        m_environment = QProcessEnvironment();
        set("PATH", qEnvironmentVariable("PATH"));
        set("HOME", m_root.filePath(QStringLiteral("home")));
        for (const char* name :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
            set(name, m_root.filePath(QStringLiteral("home/") + QString::fromLatin1(name)));
        }
        set("TMPDIR", m_root.filePath(QStringLiteral("tmp")));
        for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "LD_LIBRARY_PATH"}) {
            if (qEnvironmentVariableIsSet(name)) {
                set(name, qEnvironmentVariable(name));
            }
        }
    }

    static QString program() {
        return QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(QStringLiteral("gramoscope-draw"));
    }
    QString path(const QString& name) const { return m_root.filePath(QStringLiteral("work/") + name); }
    QDir work() const { return QDir(m_root.filePath(QStringLiteral("work"))); }
    void set(const char* name, const QString& value) {
        m_environment.insert(QString::fromLatin1(name), value);
    }
    void unset(const char* name) { m_environment.remove(QString::fromLatin1(name)); }
    void inChild(std::function<void()> modifier) { m_modifier = std::move(modifier); }

    bool put(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    QByteArray get(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool put(const QString& name, const Points& points, qint32 bpm = takeBpm) const {
        return put(name, curveFile(points, bpm));
    }

    /// Runs with these arguments in the working folder.
    Drawn run(const QStringList& arguments) const {
        Drawn drawn;
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setWorkingDirectory(work().path());
        if (m_modifier) {
            process.setChildProcessModifier(m_modifier);
        }
        process.start(program(), arguments);
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) {
            drawn.complaint = process.errorString();
            return drawn;
        }
        drawn.exitCode = process.exitCode();
        drawn.said = QString::fromUtf8(process.readAllStandardOutput());
        drawn.complaint = QString::fromUtf8(process.readAllStandardError());
        return drawn;
    }
    /// Draws "in.grw" as "out.png", which is gone before.
    Drawn draw(const QStringList& more = {}) const {
        QFile::remove(path(QStringLiteral("out.png")));
        Drawn drawn = run(QStringList{QStringLiteral("in.grw"), QStringLiteral("out.png")} + more);
        drawn.picture.load(path(QStringLiteral("out.png")), "PNG");
        return drawn;
    }
    Drawn draw(const Points& points, const QStringList& more = {}) const {
        return put(QStringLiteral("in.grw"), points) ? draw(more) : Drawn();
    }

    /// What the program has left in the home and the temporary folder.
    QStringList leftBehind() const {
        constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        return QDir(m_root.filePath(QStringLiteral("home"))).entryList(everything) +
               QDir(m_root.filePath(QStringLiteral("tmp"))).entryList(everything);
    }

private:
    QTemporaryDir m_root;
    QProcessEnvironment m_environment;
    std::function<void()> m_modifier;
};

inline bool near(QColor a, QColor b, int tolerance = 2) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

/// Pixels of that colour within a rectangle of the picture.
inline int countOf(const QImage& picture, const QRect& where, QColor color, int tolerance = 2) {
    int count = 0;
    const QRect inside = where & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            count += near(picture.pixelColor(x, y), color, tolerance) ? 1 : 0;
        }
    }
    return count;
}
inline int countOf(const QImage& picture, QColor color) {
    return countOf(picture, picture.rect(), color);
}
