#pragma once

#include <QByteArray>

#include <vector>

/// What a hardware button of the camera stand asks for. The order is the order in which several
/// buttons that arrive in one read act.
enum class ButtonAction {
    RotateLeft,
    RotateRight,
    ZoomIn,
    ZoomOut,
    TrueSize,
    Fit,
    Capture,
    RestartCamera ///< close the main camera and open it again at the chosen size
};

/// The actions of the button frames in `received`, the bytes of one read, in the order of
/// `ButtonAction`; a button that is found twice acts once. A frame has seven bytes, FF AA C5 81 c
/// (FF - c) 4C, where c tells the button; a broken or split frame is no frame. While the assist
/// view lies over the preview (`assistOn`), rotation, zoom and true size are left out, since they
/// would move the picture under it.
std::vector<ButtonAction> buttonActions(const QByteArray &received, bool assistOn);
