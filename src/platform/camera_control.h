#pragma once

#include <QList>
#include <QString>

/// One thing about the picture that a camera's driver lets a program choose. Ranges and defaults
/// are the driver's; the numbers have no unit that holds for every camera.
struct CameraControl
{
    /// In the order in which they are put back: what is automatic before its manual partner, which
    /// drivers refuse while the automatic is on.
    enum Kind {
        Brightness,
        Contrast,
        Saturation,
        Sharpness,
        PowerLine, ///< a menu, entries as the driver numbers them
        AutoExposure,
        Exposure,
        AutoWhiteBalance,
        WhiteBalance,
        AutoFocus,
        Focus,
        kKinds
    };
    struct Entry
    {
        int value;
        QString text; ///< the driver's own, English
    };

    Kind kind = Brightness;
    int min = 0, max = 0, step = 1;
    int defaultValue = 0;
    int value = 0;          ///< automatic ones: 0 or 1
    QList<Entry> menu = {}; ///< the only values of a menu
};

/// The automatic one that rules `kind`; `kind` itself when none does.
constexpr CameraControl::Kind automaticOf(CameraControl::Kind kind)
{
    const bool isManual = kind == CameraControl::Exposure || kind == CameraControl::WhiteBalance ||
                          kind == CameraControl::Focus;
    return isManual ? static_cast<CameraControl::Kind>(kind - 1) : kind;
}

constexpr bool isAutomatic(CameraControl::Kind kind)
{
    return kind == CameraControl::AutoExposure || kind == CameraControl::AutoWhiteBalance ||
           kind == CameraControl::AutoFocus;
}
