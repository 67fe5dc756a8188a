#include "features/button_frames.h"

#include <gmock/gmock.h>

#include <random>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

QByteArray frame(int command)
{
    const QByteArray start = QByteArray::fromHex("ffaac581");
    return start + static_cast<char>(command) + static_cast<char>(0xFF - command) + '\x4C';
}

} // namespace

TEST(ButtonFrames, EveryButtonActsAndTheAssistViewHoldsBackWhatMovesThePicture)
{
    using A = ButtonAction;
    const struct
    {
        int command;
        A action;
        bool worksWithAssist;
    } buttons[] = {{0xEC, A::RotateLeft, false}, {0xEE, A::RotateRight, false},
                   {0xE0, A::ZoomIn, false},     {0xE2, A::ZoomOut, false},
                   {0xEA, A::TrueSize, false},   {0xE8, A::Fit, true},
                   {0xE4, A::Capture, true},     {0xE6, A::RestartCamera, true}};
    for (const auto &button : buttons) {
        EXPECT_THAT(buttonActions(frame(button.command), false), ElementsAre(button.action));
        EXPECT_EQ(buttonActions(frame(button.command), true).size(), button.worksWithAssist)
            << button.command;
    }
}

TEST(ButtonFrames, SeveralFramesInOneReadActOnceEachInTableOrder)
{
    const QByteArray both = "noise" + frame(0xE4) + frame(0xE8) + frame(0xE4);
    EXPECT_THAT(buttonActions(both, false), ElementsAre(ButtonAction::Fit, ButtonAction::Capture));
}

TEST(ButtonFrames, BrokenSplitAndRandomBytesDoNothing)
{
    QByteArray wrongCheck = frame(0xE4);
    wrongCheck[5] = '\x1C';
    EXPECT_THAT(buttonActions(wrongCheck, false), IsEmpty());
    EXPECT_THAT(buttonActions(frame(0xE4).left(4), false), IsEmpty());
    EXPECT_THAT(buttonActions(frame(0xE4).mid(4), false), IsEmpty());

    std::mt19937 random(1);
    QByteArray noise(1 << 20, '\0');
    for (char &byte : noise)
        byte = static_cast<char>(random());
    EXPECT_THAT(buttonActions(noise, false), IsEmpty());
}
