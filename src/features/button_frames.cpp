#include "features/button_frames.h"

namespace {

struct ButtonCode
{
    const char *frame; ///< the whole frame in lower-case hexadecimal digits
    ButtonAction action;
    bool movesPreview;
};

constexpr ButtonCode kCodes[] = {
    {"ffaac581ec134c", ButtonAction::RotateLeft, true},
    {"ffaac581ee114c", ButtonAction::RotateRight, true},
    {"ffaac581e01f4c", ButtonAction::ZoomIn, true},
    {"ffaac581e21d4c", ButtonAction::ZoomOut, true},
    {"ffaac581ea154c", ButtonAction::TrueSize, true},
    {"ffaac581e8174c", ButtonAction::Fit, false},
    {"ffaac581e41b4c", ButtonAction::Capture, false},
    {"ffaac581e6194c", ButtonAction::RestartCamera, false},
};

} // namespace

std::vector<ButtonAction> buttonActions(const QByteArray &received, bool assistOn)
{
    const QByteArray text = received.toHex();
    std::vector<ButtonAction> actions;
    for (const ButtonCode &code : kCodes) {
        if (text.contains(code.frame) && !(assistOn && code.movesPreview))
            actions.push_back(code.action);
    }
    return actions;
}
