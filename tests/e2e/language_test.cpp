#include "app/state.h"
#include "e2e/application.h"
#include "video/video_thread.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>

#include <gtest/gtest.h>

TEST(Language, SwitchingDisturbsNeitherCameraNorRecordingNorPageTurn)
{
    Application app(
        {{"--scene", "page", "--modes", "1280x720@15"}, "NameType=1\nImgQuality=80\n", {}});
    ASSERT_TRUE(app.waitForPicture());
    app.find<QComboBox>("cropComBox")->setCurrentIndex(AutomaticCrop);
    app.click("bt_record");
    app.find<QComboBox>("v_formatComBox")->setCurrentIndex(1);
    app.click("Bt_StartRec");
    app.click("bt_wiseCaptrue");
    ASSERT_TRUE(waitFor([&] { return app.files().size() == 2; }, 20000)) << "a page and a video";

    const auto *box = app.find<QComboBox>("cropComBox");
    auto *languages = app.find<QComboBox>("languageComBox");
    for (int round = 0; round < 6; ++round) {
        const quint64 sequence = videoThread->lastFrame()->sequence;
        languages->setCurrentIndex(1 - languages->currentIndex());
        EXPECT_EQ(cutMode, AutomaticCrop);
        EXPECT_TRUE(isRecord && isWiseCaptrue && isOpenCamera);
        ASSERT_TRUE(waitFor([&] { return videoThread->lastFrame()->sequence > sequence + 2; }));
        EXPECT_FALSE(videoThread->lastFrame()->outlines.empty());
    }
    languages->setCurrentIndex(1);
    EXPECT_EQ(box->currentText(), QString::fromUtf8("自动裁切"));
    EXPECT_EQ(app.find<QAbstractButton>("bt_wiseCaptrue")->text(), QString::fromUtf8("停止连拍"));
    EXPECT_EQ(app.find<QLabel>("wiseTimeLabel")->text(), QString::fromUtf8("等待翻页..."));
    EXPECT_NE(app.find<QLabel>("recTimeLabel")->text(), "00:00:00");
    app.click("bt_wiseCaptrue");
    app.click("Bt_StopRec");
    ASSERT_TRUE(waitFor([&] { return app.find<QListWidget>("listWidget1")->count() == 2; }, 15000));
    EXPECT_EQ(app.files().size(), 2) << "no page was captured twice";
    const QString video = app.images() + '/' + app.files().filter(".avi").value(0);
    EXPECT_EQ(run("ffprobe", {"-v", "error", video}), 0);
    EXPECT_GT(QFileInfo(video).size(), 0);
}
