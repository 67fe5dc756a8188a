#include "video/gr_cam_item.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

namespace {

// An 8-megapixel frame with detail in every block.
QImage frame()
{
    QImage image(3264, 2448, QImage::Format_RGB888);
    uint32_t random = 1;
    for (int y = 0; y < image.height(); ++y) {
        uchar *row = image.scanLine(y);
        for (int x = 0; x < image.width() * 3; ++x)
            row[x] = uchar((random = random * 1664525u + 1013904223u) >> 24);
    }
    return image;
}

QRectF zoomed(const benchmark::State &state)
{
    const double zoom = double(state.range(0)) / 100;
    return {400 - 400 * zoom, 300 - 300 * zoom, 800 * zoom, 600 * zoom};
}

// Every iteration shows a new frame, as the live picture does; the argument is the zoom in percent.
void preview_paint(benchmark::State &state)
{
    const QImage source = frame();
    QImage screen(800, 600, QImage::Format_RGB32);
    const QRectF shown = zoomed(state);
    Gr_CamItem item;
    item.setShowRect(shown.x(), shown.y(), shown.width(), shown.height());
    for (auto _ : state) {
        item.SetQImage(source);
        QPainter painter(&screen);
        item.paint(&painter, nullptr, nullptr);
    }
}
BENCHMARK(preview_paint)->Arg(100)->Arg(150)->Arg(200)->Arg(300)->Unit(benchmark::kMillisecond);

// Bilinear sampling of the whole frame, which drops three of four pixels.
void preview_paint_reference(benchmark::State &state)
{
    const QImage source = frame();
    QImage screen(800, 600, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&screen);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(zoomed(state), source);
    }
}
BENCHMARK(preview_paint_reference)
    ->Arg(100)
    ->Arg(150)
    ->Arg(200)
    ->Arg(300)
    ->Unit(benchmark::kMillisecond);

} // namespace
