#include "platform/fed_recording.h"
#include "platform/system_sound.h"
#include "support/files.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FedRecording, TimesASoundDeviceFromTheStartAndEndsWithThePictures)
{
    RecordRequest request;
    request.ffmpeg = "/my bin/ffmpeg";
    request.target = "/v/lesson one.mp4";
    request.startUs = 1700000000000042;
    const QStringList silent = QProcess::splitCommand(fedRecordCommand(request, {}));
    EXPECT_EQ(silent.first(), request.ffmpeg);
    EXPECT_EQ(silent.last(), request.target);
    EXPECT_EQ(silent.count("-i"), 1);
    const SoundInput microphone{"pulse", "alsa_input.usb-A B-02.mono", "A B"};
    const QStringList words = QProcess::splitCommand(fedRecordCommand(request, microphone));
    EXPECT_EQ(words[words.indexOf("-itsoffset") + 1], "-1700000000.000042");
    EXPECT_EQ(words[words.lastIndexOf("-i") + 1], microphone.device);
    EXPECT_TRUE(words.contains("-shortest"));
}

TEST(SystemSound, FindsTheCamerasOwnMicrophoneAmongCardsThatRecord)
{
    const QTemporaryDir folder;
    for (const char *device : {"card0/pcm0p", "card1/pcm2c", "card2/pcm0c"})
        ASSERT_TRUE(QDir(folder.path()).mkpath(device));
    writeFile(folder.filePath("card1/id"), "PCH\n");
    writeFile(folder.filePath("card2/id"), "Camera\n");
    writeFile(folder.filePath("cards"), " 1 [PCH            ]: HDA-Intel - HDA Intel PCH\n"
                                        "                      HDA Intel PCH at 0xf7f10000\n"
                                        " 2 [Camera         ]: USB-Audio - USB 2.0 Camera\n");
    const QList<SoundInput> cards = soundCards(folder.path());
    ASSERT_EQ(cards.size(), 2);
    EXPECT_EQ(cards[0].device, "plughw:CARD=PCH,DEV=2");
    EXPECT_EQ(cards[1].description, "USB 2.0 Camera");
    EXPECT_EQ(microphoneOfCamera("USB 2.0 Camera", cards), 1);
    EXPECT_EQ(microphoneOfCamera("Other", cards), -1);
    EXPECT_EQ(microphoneOfCamera("", cards), -1);
    EXPECT_EQ(microphoneOfCamera("USB 2.0 Camera",
                                 {{"pulse", "alsa_input.usb-Maker_USB_2.0_Camera-02.mono", "Mic"}}),
              0);
}
