#include "app/paths.h"
#include "mainwindow/cameras/picture_controls.h"
#include "mainwindow/cameras/picture_dialog.h"
#include "support/fake_platform.h"

#include <QFile>
#include <QSignalSpy>
#include <QSlider>

#include <gtest/gtest.h>

namespace {

const QString kHere = QStringLiteral("1-1:1.0-12090001");
const QString kOtherPort = QStringLiteral("1-4:1.0-12090001");

} // namespace

class Picture : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(settingsPath());
        m_platform = FakePlatform::install();
        m_platform->cameraList = {{kHere, QString()}, {kOtherPort, QString()}};
        m_platform->controlList = m_usual;
    }
    void TearDown() override
    {
        QFile::remove(settingsPath());
        setPlatform(nullptr);
    }

    void open(PictureControls &controls, const QString &id)
    {
        QSignalSpy spy(&controls, &PictureControls::changed);
        controls.open(id);
        await(spy, 2);
    }
    static void await(QSignalSpy &spy, int count)
    {
        while (spy.count() < count)
            ASSERT_TRUE(spy.wait(5000));
    }
    int value(int at) const { return m_platform->controlList[at].value; }

    const QList<CameraControl> m_usual{{CameraControl::Brightness, 0, 100, 5, 50, 50},
                                       {CameraControl::AutoFocus, 0, 1, 1, 1, 1},
                                       {CameraControl::Focus, 0, 100, 1, 0, 0}};
    FakePlatform *m_platform = nullptr;
};

TEST_F(Picture, ChoicesComeBackAfterARestartAndAtAnotherPort)
{
    {
        PictureControls controls;
        open(controls, kHere);
        QSignalSpy spy(&controls, &PictureControls::changed);
        controls.set(CameraControl::Brightness, 80);
        await(spy, 1);
        EXPECT_EQ(value(0), 80);
    }
    m_platform->controlList = m_usual; // unplugged
    PictureControls controls;
    open(controls, kOtherPort);
    EXPECT_EQ(value(0), 80);
    EXPECT_EQ(controls.list()[0].value, 80);

    QSignalSpy spy(&controls, &PictureControls::changed);
    controls.setDefaults();
    await(spy, 1);
    EXPECT_EQ(value(0), 50);
    open(controls, kOtherPort);
    EXPECT_EQ(value(0), 50) << "the other port's choice came back";
}

TEST_F(Picture, TheAutomaticGreysItsManualPartner)
{
    PictureControls controls;
    open(controls, kHere);
    PictureDialog dialog(&controls, nullptr);
    const QList<QSlider *> sliders = dialog.findChildren<QSlider *>();
    ASSERT_EQ(sliders.size(), 2);
    EXPECT_FALSE(sliders[1]->isEnabled());
    QSignalSpy spy(&controls, &PictureControls::changed);
    controls.set(CameraControl::AutoFocus, 0);
    await(spy, 1);
    EXPECT_TRUE(sliders[1]->isEnabled());
    sliders[0]->setValue(3);
    await(spy, 2);
    EXPECT_EQ(value(0), 15);

    controls.open(QString()); // gone
    EXPECT_TRUE(dialog.findChildren<QSlider *>().isEmpty());
}
