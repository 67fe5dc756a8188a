#pragma once

#include <QSize>
#include <QString>
#include <QVector>

#include <array>
#include <string_view>

/// One mode as `CamParams::getResolution` gives it.
struct ProbedMode
{
    int width = 0;
    int height = 0;
    int fps = 0;
};

/// One entry of the resolution box.
struct ResolutionEntry
{
    QString size;          ///< "3264x2448"
    QString rate;          ///< frames a second as text
    bool enlarged = false; ///< larger than any mode; reached by enlarging the saved picture
};

using ResolutionList = QVector<ResolutionEntry>;

/// Classes of enlarged sizes in the order in which they are offered: the sensor's own size and the
/// largest offered one, in units of ten thousand pixels.
enum EnlargedSizes {
    From500wTo800w,
    From800wTo1000w,
    From800wTo1200w,
    From800wTo1300w,
    From1100wTo1300w,
    From1100wTo1400w,
    From1100wTo1500w,
    From1100wTo1600w,
    From1100wTo1800w,
    From1300wTo1600w,
    From1300wTo1800w,
    From1300wTo2200w,
    From1600wTo1800w,
    From1600wTo2000w,
    From1600wTo2100w,
    kEnlargedClasses
};

/// One class of enlarged sizes: the camera flag that offers them and the flag that tells that one
/// of them is chosen. The class without a photo flag (null) writes its camera flag instead.
struct EnlargedClass
{
    std::string_view name; ///< in the settings file
    bool *camera = nullptr;
    bool *photo = nullptr;
    std::array<std::string_view, 3> sizes; ///< unused places are empty
};

/// The class of each value of EnlargedSizes.
const std::array<EnlargedClass, kEnlargedClasses> &enlargedClasses();

/// "3264x2448" as numbers; an invalid size when the text is none.
QSize parseSize(const QString &text);

/// The modes worth offering: not below 1280x720 pixels in area, and not 3264x1836.
ResolutionList nativeResolutions(const QVector<ProbedMode> &modes);

/// Appends the enlarged sizes of every set camera flag, each with `rate`.
void addInsertResolution(ResolutionList &list, const QString &rate);

/// Index of the entry of the greatest height, the first of equals; -1 when the list is empty.
int tallestResolution(const ResolutionList &list);

/// The mode to open for the chosen size: the tallest native one for an enlarged size or a size
/// that is not listed, else the entry itself. An empty entry when nothing native is listed.
ResolutionEntry resolutionToOpen(const ResolutionList &list, const QString &chosen);

/// Recomputes the photo flags for the chosen size. Choosing any size but 3672x2856 takes that one
/// off the list for good.
void CheckPhotoIsNeedInsert(int width, int height);

/// True when the size given to `CheckPhotoIsNeedInsert` last is an enlarged one.
bool isEnlargedSize();

/// Index of the mode for the picture in picture: the largest not above 1920x1080, else the
/// smallest; -1 when there is none.
int assistResolution(const QVector<ProbedMode> &modes);
