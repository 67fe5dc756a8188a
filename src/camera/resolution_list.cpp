#include "camera/resolution_list.h"

#include "app/state.h"

#include <algorithm>

namespace {

constexpr int kPixelsMin = 1280 * 720;
constexpr QSize kNeverOffered(3264, 1836);
constexpr QSize kAssistMax(1920, 1080);

constexpr std::array<EnlargedClass, kEnlargedClasses> kClasses = {{
    {"500w-800w", &is500wTo800w, &isPhoto500wTo800w, {"3264x2448"}},
    {"800w-1000w", &is800wTo1000w, nullptr, {"3672x2856"}},
    {"800w-1200w", &is800wTo1200w, &isPhoto800wTo1200w, {"4000x3000"}},
    {"800w-1300w", &is800wTo1300w, &isPhoto800wTo1300w, {"4208x3120"}},
    {"1100w-1300w", &is1100wTo1300w, &isPhoto1100wTo1300w, {"4208x3120"}},
    {"1100w-1400w", &is1100wTo1400w, &isPhoto1100wTo1400w, {"4320x3240"}},
    {"1100w-1500w", &is1100wTo1500w, &isPhoto1100wTo1500w, {"4416x3312"}},
    {"1100w-1600w", &is1100wTo1600w, &isPhoto1100wTo1600w, {"4208x3120", "4608x3456"}},
    {"1100w-1800w", &is1100wTo1800w, &isPhoto1100wTo1800w, {"4208x3120", "4608x3456", "4896x3672"}},
    {"1300w-1600w", &is1300wTo1600w, &isPhoto1300wTo1600w, {"4608x3456"}},
    {"1300w-1800w", &is1300wTo1800w, &isPhoto1300wTo1800w, {"4608x3456", "4896x3672"}},
    {"1300w-2200w", &is1300wTo2200w, &isPhoto1300wTo2200w, {"4608x3456", "4896x3672", "5412x4056"}},
    {"1600w-1800w", &is1600wTo1800w, &isPhoto1600wTo1800w, {"4896x3672"}},
    {"1600w-2000w", &is1600wTo2000w, &isPhoto1600wTo2000w, {"4896x3672", "5152x3864"}},
    {"1600w-2100w", &is1600wTo2100w, &isPhoto1600wTo2100w, {"4896x3672", "5412x4056"}},
}};

QString toText(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

qint64 area(const ProbedMode &mode)
{
    return qint64{mode.width} * mode.height;
}

bool isSize(const ProbedMode &mode)
{
    return mode.width > 0 && mode.height > 0;
}

bool isOffered(const ProbedMode &mode)
{
    return isSize(mode) && area(mode) >= kPixelsMin &&
           QSize(mode.width, mode.height) != kNeverOffered;
}

bool fitsAssist(const ProbedMode &mode)
{
    return mode.width <= kAssistMax.width() && mode.height <= kAssistMax.height();
}

// Whether `a` suits the picture in picture better than `b`.
bool isBetterForAssist(const ProbedMode &a, const ProbedMode &b)
{
    if (fitsAssist(a) != fitsAssist(b))
        return fitsAssist(a);
    return fitsAssist(a) ? area(a) > area(b) : area(a) < area(b);
}

} // namespace

const std::array<EnlargedClass, kEnlargedClasses> &enlargedClasses()
{
    return kClasses;
}

QSize parseSize(const QString &text)
{
    const int cross = text.indexOf(QLatin1Char('x'));
    bool hasWidth = false, hasHeight = false;
    const QSize size(text.left(cross).toInt(&hasWidth), text.mid(cross + 1).toInt(&hasHeight));
    return cross > 0 && hasWidth && hasHeight ? size : QSize();
}

ResolutionList nativeResolutions(const QVector<ProbedMode> &modes)
{
    ResolutionList list;
    for (const ProbedMode &mode : modes) {
        if (isOffered(mode))
            list.append({QStringLiteral("%1x%2").arg(mode.width).arg(mode.height),
                         QString::number(mode.fps), false});
    }
    return list;
}

void addInsertResolution(ResolutionList &list, const QString &rate)
{
    for (const EnlargedClass &enlarged : kClasses) {
        for (const std::string_view size : enlarged.sizes) {
            if (*enlarged.camera && !size.empty())
                list.append({toText(size), rate, true});
        }
    }
}

int tallestResolution(const ResolutionList &list)
{
    const auto isLower = [](const ResolutionEntry &a, const ResolutionEntry &b) {
        return parseSize(a.size).height() < parseSize(b.size).height();
    };
    const auto tallest = std::max_element(list.begin(), list.end(), isLower);
    return tallest == list.end() ? -1 : static_cast<int>(tallest - list.begin());
}

ResolutionEntry resolutionToOpen(const ResolutionList &list, const QString &chosen)
{
    ResolutionList native;
    std::copy_if(list.begin(), list.end(), std::back_inserter(native),
                 [](const ResolutionEntry &entry) { return !entry.enlarged; });
    const auto same =
        std::find_if(native.begin(), native.end(),
                     [&chosen](const ResolutionEntry &entry) { return entry.size == chosen; });
    return same != native.end() ? *same : native.value(tallestResolution(native));
}

void CheckPhotoIsNeedInsert(int width, int height)
{
    const QString chosen = QStringLiteral("%1x%2").arg(width).arg(height);
    for (const EnlargedClass &enlarged : kClasses) {
        const bool isOneOfIts =
            std::any_of(enlarged.sizes.begin(), enlarged.sizes.end(),
                        [&chosen](std::string_view size) { return chosen == toText(size); });
        if (enlarged.photo)
            *enlarged.photo = *enlarged.camera && isOneOfIts;
        else
            *enlarged.camera = isOneOfIts;
    }
}

bool isEnlargedSize()
{
    return std::any_of(kClasses.begin(), kClasses.end(), [](const EnlargedClass &enlarged) {
        return enlarged.photo ? *enlarged.photo : *enlarged.camera;
    });
}

int assistResolution(const QVector<ProbedMode> &modes)
{
    int best = -1;
    for (int i = 0; i < modes.size(); ++i) {
        if (isSize(modes[i]) && (best < 0 || isBetterForAssist(modes[i], modes[best])))
            best = i;
    }
    return best;
}
