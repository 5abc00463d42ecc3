#include "windowpart.h"

#include <QBackingStore>
#include <QRegion>
#include <QWidget>

std::optional<WindowPart> windowPart(const QWidget& widget) {
    QBackingStore* const store = widget.backingStore();
    QPaintDevice* const device = store != nullptr ? store->paintDevice() : nullptr;
    if (device == nullptr || device->devType() != QInternal::Image ||
        widget.visibleRegion() != QRegion(widget.rect())) {
        return std::nullopt;
    }
    auto& window = static_cast<QImage&>(*device);
    const double ratio = device->devicePixelRatio(); // as painters have it: the image's own is a little off
    const QPoint corner = widget.mapTo(widget.window(), QPoint());
    const auto onDevice = [ratio](QPoint at) {
        return QPoint(qRound(at.x() * ratio), qRound(at.y() * ratio));
    };
    // The device pixels that are the widget's, as the window's own painter cuts them out: neighbours share
    // none and leave none over.
    const QRect place(onDevice(corner),
                      onDevice(corner + QPoint(widget.width(), widget.height())) - QPoint(1, 1));
    if (window.depth() != 32 || place.isEmpty() || !window.rect().contains(place)) {
        return std::nullopt;
    }
    // Not bits(): that would make a copy of a picture that is shared.
    uchar* const first = const_cast<uchar*>(window.constScanLine(place.y())) + std::ptrdiff_t(place.x()) * 4;
    WindowPart part{QImage(first, place.width(), place.height(), window.bytesPerLine(), window.format()),
                    (QPointF(corner) * ratio - QPointF(place.topLeft())) / ratio};
    part.pixels.setDevicePixelRatio(ratio);
    part.pixels.setDotsPerMeterX(window.dotsPerMeterX());
    part.pixels.setDotsPerMeterY(window.dotsPerMeterY());
    return part;
}
