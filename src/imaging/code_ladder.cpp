#include "imaging/code_ladder.h"

#include "imaging/failure.h"

#include <opencv2/imgproc.hpp>
#include <zbar.h>

#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace {

constexpr int kAdaptiveBlock = 33;
constexpr int kSweepStep = 20, kSweepMax = 239;
constexpr int kAttemptsPerStep = 2; // as it is, opened
const char *const kQrName = "QR-Code";

using Scanner =
    std::unique_ptr<zbar::zbar_image_scanner_t, decltype(&zbar::zbar_image_scanner_destroy)>;
using Image = std::unique_ptr<zbar::zbar_image_t, decltype(&zbar::zbar_image_destroy)>;

bool isWanted(const zbar::zbar_symbol_t *symbol, int type)
{
    const bool isQr =
        std::strcmp(zbar::zbar_get_symbol_name(zbar::zbar_symbol_get_type(symbol)), kQrName) == 0;
    return isQr == (type != 0);
}

/// The black-and-white pictures that the ladder tries, in order. Each is made when the first of
/// its attempts begins and released with the last.
class Ladder
{
public:
    explicit Ladder(const cv::Mat &gray)
        : m_gray(gray)
    {
        cv::Mat binary;
        const double otsu =
            cv::threshold(gray, binary, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
        addStep([binary] { return binary; });
        addStep([this] {
            cv::Mat adaptive;
            cv::adaptiveThreshold(m_gray, adaptive, 255, cv::ADAPTIVE_THRESH_GAUSSIAN_C,
                                  cv::THRESH_BINARY, kAdaptiveBlock, 0);
            return adaptive;
        });
        // The sweep begins with Otsu's threshold, which was the first step.
        for (int level = static_cast<int>(otsu) + kSweepStep; level <= kSweepMax;
             level += kSweepStep) {
            addStep([this, level] {
                cv::Mat swept;
                cv::threshold(m_gray, swept, level, 255, cv::THRESH_BINARY);
                return swept;
            });
        }
    }

    int attempts() const { return static_cast<int>(m_steps.size()) * kAttemptsPerStep; }

    std::string attempt(int index, int type)
    {
        Step &step = *m_steps[static_cast<size_t>(index / kAttemptsPerStep)];
        std::call_once(step.made, [&step] {
            step.binary = step.make();
            step.make = nullptr;
        });
        const cv::Mat picture = index % kAttemptsPerStep == 0 ? step.binary : opened(step.binary);
        if (--step.left == 0)
            step.binary.release();
        return decodedCode(picture, type);
    }

private:
    struct Step
    {
        std::function<cv::Mat()> make;
        std::once_flag made;
        cv::Mat binary;
        std::atomic<int> left{kAttemptsPerStep};
    };

    void addStep(std::function<cv::Mat()> make)
    {
        m_steps.push_back(std::make_unique<Step>());
        m_steps.back()->make = std::move(make);
    }

    cv::Mat m_gray;
    std::vector<std::unique_ptr<Step>> m_steps;
};

/// Two threads take the attempts in order; the earliest that finds something gives the answer,
/// as if they had run one after another. Most codes are found by the first step: nothing else is
/// begun before it has ended.
class Search
{
public:
    Search(const cv::Mat &gray, int type)
        : m_ladder(gray)
        , m_type(type)
        , m_texts(static_cast<size_t>(m_ladder.attempts()))
    {
    }

    std::string run()
    {
        runUpTo(kAttemptsPerStep);
        if (m_found == kNone)
            runUpTo(m_ladder.attempts());
        return m_text;
    }

    // The first other step that reads anything, tried before the answer or now, reads the same.
    bool confirm()
    {
        const int own = m_found / kAttemptsPerStep;
        for (int index = 0; index < m_ladder.attempts(); ++index) {
            if (index / kAttemptsPerStep == own)
                continue;
            std::optional<std::string> &text = m_texts[static_cast<size_t>(index)];
            if (!text)
                text = tried(index);
            if (!text->empty())
                return *text == m_text;
        }
        return false;
    }

private:
    static constexpr int kNone = INT_MAX;

    // Tries what is left below `end`.
    void runUpTo(int end)
    {
        std::atomic<int> next{m_tried};
        const auto work = [this, &next, end] {
            for (int index = next++; index < end && index < m_found; index = next++)
                attempt(index);
        };
        std::thread helper(work);
        work();
        helper.join();
        m_tried = end;
    }

    std::string tried(int index)
    {
        try {
            return m_ladder.attempt(index, m_type);
        } catch (const std::exception &exception) {
            loggedFailure("code reading failed", exception);
            return {};
        }
    }

    void attempt(int index)
    {
        const std::string text = tried(index);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_texts[static_cast<size_t>(index)] = text;
        if (text.empty())
            return;
        if (index < m_found) {
            m_found = index;
            m_text = text;
        }
    }

    Ladder m_ladder;
    const int m_type;
    int m_tried = 0;
    std::atomic<int> m_found{kNone};                 // written under the mutex only
    std::mutex m_mutex;                              // guards the texts
    std::vector<std::optional<std::string>> m_texts; // of each attempt made
    std::string m_text;
};

} // namespace

std::string scannedCode(const cv::Mat &picture, int type, Symbologies symbologies)
{
    const cv::Mat gray = picture.isContinuous() ? picture : picture.clone();
    const Scanner scanner(zbar::zbar_image_scanner_create(), zbar::zbar_image_scanner_destroy);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE,
                                        symbologies != Symbologies::QrOnly);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_ENABLE,
                                        symbologies != Symbologies::AllButQr);

    const Image image(zbar::zbar_image_create(), zbar::zbar_image_destroy);
    zbar::zbar_image_set_format(image.get(), zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_size(image.get(), static_cast<unsigned>(gray.cols),
                              static_cast<unsigned>(gray.rows));
    zbar::zbar_image_set_data(image.get(), gray.data, gray.total(), nullptr);
    if (zbar::zbar_scan_image(scanner.get(), image.get()) < 1) {
        std::printf("No BarQrCode!!\r");
        return {};
    }
    for (const zbar::zbar_symbol_t *symbol = zbar::zbar_image_first_symbol(image.get()); symbol;
         symbol = zbar::zbar_symbol_next(symbol))
    {
        if (isWanted(symbol, type))
            return {zbar::zbar_symbol_get_data(symbol), zbar::zbar_symbol_get_data_length(symbol)};
    }
    return {};
}

// Barcodes are found alike whether QR codes are looked for or not. Looking for QR codes alone
// misses none that the full scan sees, but may see more, because the barcode decoders cover some
// of their lines: what it finds is left to the full scan to confirm. Each takes half the time.
std::string decodedCode(const cv::Mat &gray, int type)
{
    if (type == 0)
        return scannedCode(gray, type, Symbologies::AllButQr);
    const std::string text = scannedCode(gray, type, Symbologies::QrOnly);
    return text.empty() ? text : scannedCode(gray, type, Symbologies::All);
}

cv::Mat opened(const cv::Mat &binary)
{
    cv::Mat result;
    cv::morphologyEx(binary, result, cv::MORPH_OPEN,
                     cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3)));
    return result;
}

std::string climbLadder(const cv::Mat &gray, int type)
{
    return Search(gray, type).run();
}

LadderCode climbLadderTwice(const cv::Mat &gray, int type)
{
    Search search(gray, type);
    LadderCode code{search.run()};
    if (code.text.empty() || type != 0) {
        code.isConfirmed = !code.text.empty();
        return code;
    }
    const std::string plain = scannedCode(gray, type, Symbologies::AllButQr);
    code.isConfirmed = (plain.empty() || plain == code.text) && search.confirm();
    return code;
}
