// The part of a window that is a widget's, on a screen whose ratio is no fraction of two small numbers.
#include "painter/windowpart.h"

#include "support/testmain.h"

#include <QApplication>
#include <QBackingStore>
#include <QPainter>
#include <QTest>
#include <QWidget>

#include <cmath>

namespace {

class Plain : public QWidget {
public:
    Plain(QWidget* parent, const QColor& color) : QWidget(parent), m_color(color) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    int originRow = 0; ///< device pixels from the window's corner

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        originRow = int(std::floor(painter.deviceTransform().dy() + 0.5));
        painter.fillRect(rect(), m_color);
    }

private:
    QColor m_color;
};

struct Rows {
    int first;
    int last;
    bool operator==(const Rows&) const = default;
};

Rows rowsOf(const QImage& image, const QColor& color) {
    Rows rows{-1, -1};
    for (int y = 0; y < image.height(); ++y) {
        if (image.pixel(5, y) == color.rgb()) {
            rows = {rows.first < 0 ? y : rows.first, y};
        }
    }
    return rows;
}

} // namespace

class TestWindowPart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void itIsWhatTheWindowsOwnPainterGivesTheWidget() {
        QWidget top;
        top.resize(40, 400);
        Plain above(&top, Qt::red);
        Plain middle(&top, Qt::green);
        Plain below(&top, Qt::blue);
        top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&top));
        QVERIFY(std::abs(top.devicePixelRatioF() - 1.3) < 0.001);
        for (int corner = 20; corner < 120; ++corner) {
            for (const int height : {60, 101}) {
                above.setGeometry(0, 0, 40, corner);
                middle.setGeometry(0, corner, 40, height);
                below.setGeometry(0, corner + height, 40, 400 - corner - height);
                top.repaint();
                QCoreApplication::processEvents();
                top.repaint();
                const auto& window = *static_cast<const QImage*>(top.backingStore()->paintDevice());
                const auto part = windowPart(middle);
                QVERIFY(part.has_value());
                const int first =
                    int((part->pixels.constBits() - window.constBits()) / window.bytesPerLine());
                QCOMPARE(Rows({first, first + part->pixels.height() - 1}), rowsOf(window, Qt::green));
                QImage pixels = part->pixels;
                QPainter painter(&pixels);
                painter.translate(part->corner);
                const double origin = painter.deviceTransform().dy();
                QCOMPARE(first + int(std::floor(origin + 0.5)), middle.originRow);
            }
        }
    }
};

namespace {
int runScaled(int argc, char* argv[]) {
    qputenv("QT_SCALE_FACTOR", "1.3");
    return TestMain::run<QApplication, TestWindowPart>(argc, argv);
}
} // namespace

GRAMO_TEST_RUN(runScaled)
#include "tst_windowpart.moc"
