#include "features/code_watch.h"

#include "imaging/code_file_name.h"
#include "imaging/failure.h"
#include "imaging/symbol_reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <utility>

namespace {

constexpr int kSideMax = 1632; // of the picture that is looked at: half of 8 megapixels
constexpr size_t kNameBytesMax = 120;
constexpr int kCodesMax = 8;

// Few gray pixels; `scale` is how many camera pixels one of them stands for.
cv::Mat fewPixels(const Frame &frame, float &scale)
{
    cv::Mat gray;
    cv::cvtColor(frame.pixels, gray, cv::COLOR_RGB2GRAY);
    const int side = std::max(gray.cols, gray.rows);
    if (side > kSideMax) {
        const double factor = double(kSideMax) / side;
        cv::resize(gray, gray, cv::Size(), factor, factor, cv::INTER_AREA);
    }
    scale = float(std::max(frame.width, frame.height)) / float(std::max(gray.cols, gray.rows));
    return gray;
}

} // namespace

CodeWatch::CodeWatch(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<SeenCodes>(); // crosses threads
    m_worker.moveToThread(&m_thread);
    m_thread.start(QThread::LowPriority);
}

CodeWatch::~CodeWatch()
{
    m_thread.quit();
    m_thread.wait();
}

bool CodeWatch::look(const FramePtr &frame, int type)
{
    if (m_isLooking || !frame)
        return false;
    m_isLooking = true;
    QMetaObject::invokeMethod(&m_worker, [this, frame, type] {
        const SeenCodes seen = seenIn(*frame, type);
        QMetaObject::invokeMethod(this, [this, seen] {
            m_isLooking = false;
            emit looked(seen);
        });
    });
    return true;
}

SeenCodes CodeWatch::seenIn(const Frame &frame, int type)
{
    SeenCodes seen{{}, {frame.width, frame.height}, frame.angle};
    QStringList unsafe;
    try {
        float scale = 1;
        for (const CodeSymbol &symbol : readSymbols(fewPixels(frame, scale), type)) {
            const QString text = QString::fromStdString(symbol.text);
            if (!symbol.isSafe)
                unsafe.append(text);
            const std::string name = codeFileName(symbol.text, kNameBytesMax).name;
            const bool isTrusted = symbol.isSafe || m_unsafe.contains(text);
            if (name.empty() || !isTrusted || seen.codes.size() == kCodesMax)
                continue;
            QPolygonF corners;
            for (const cv::Point2f &corner : symbol.corners)
                corners << QPointF(corner.x * scale, corner.y * scale);
            seen.codes.append({QString::fromStdString(name), corners});
        }
    } catch (const std::exception &exception) {
        loggedFailure("code reading failed", exception);
    }
    m_unsafe = std::move(unsafe);
    return seen;
}
