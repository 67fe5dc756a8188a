#include "app/state.h"
#include "camera/resolution_list.h"

#include <gtest/gtest.h>

namespace {

class Resolutions : public testing::Test
{
protected:
    Resolutions()
    {
        for (const EnlargedClass &enlarged : enlargedClasses()) {
            *enlarged.camera = false;
            if (enlarged.photo)
                *enlarged.photo = false;
        }
    }

    static QStringList sizes(const ResolutionList &list)
    {
        QStringList texts;
        for (const ResolutionEntry &entry : list)
            texts.append(entry.size);
        return texts;
    }

    static QStringList offered()
    {
        ResolutionList list;
        addInsertResolution(list, QStringLiteral("15"));
        return sizes(list);
    }

    const QVector<ProbedMode> m_modes = {{640, 480, 30},   {3264, 1836, 15}, {1280, 720, 30},
                                         {1920, 1080, 30}, {3264, 2448, 15}, {2592, 2448, 20},
                                         {4000, 2000, 10}};
};

TEST_F(Resolutions, OfferWhatIsLargeEnoughTallestFirstOfEquals)
{
    const ResolutionList list = nativeResolutions(m_modes);
    EXPECT_EQ(sizes(list),
              (QStringList{"1280x720", "1920x1080", "3264x2448", "2592x2448", "4000x2000"}));
    EXPECT_EQ(tallestResolution(list), 2);
    EXPECT_EQ(list[2].rate, "15");

    EXPECT_TRUE(nativeResolutions({{640, 480, 30}, {0, 0, 30}, {-4000, -3000, 5}}).isEmpty());
    EXPECT_EQ(nativeResolutions({{1279, 721, 30}, {65536, 65536, 1}}).size(), 2)
        << "the area counts, and it must not overflow";
    EXPECT_EQ(tallestResolution({}), -1);
    EXPECT_TRUE(resolutionToOpen({}, QStringLiteral("1280x720")).size.isEmpty());
}

TEST_F(Resolutions, OpenAModeForEveryEntry)
{
    is1100wTo1600w = true;
    ResolutionList list = nativeResolutions(m_modes);
    addInsertResolution(list, QStringLiteral("15"));
    EXPECT_EQ(list[tallestResolution(list)].size, "4608x3456");
    EXPECT_EQ(resolutionToOpen(list, "4208x3120").size, "3264x2448");
    EXPECT_EQ(resolutionToOpen(list, "1920x1080").size, "1920x1080");
    EXPECT_EQ(resolutionToOpen(list, "2592x2448").rate, "20");
    EXPECT_EQ(resolutionToOpen(list, "").size, "3264x2448");
    is500wTo800w = true; // offers a size that this camera has anyway
    addInsertResolution(list, QStringLiteral("15"));
    EXPECT_FALSE(resolutionToOpen(list, "3264x2448").enlarged);
}

TEST_F(Resolutions, EnlargedSizesFollowTheFlagsInOrder)
{
    EXPECT_TRUE(offered().isEmpty());
    is1300wTo1800w = is1100wTo1800w = true;
    EXPECT_EQ(offered(),
              (QStringList{"4208x3120", "4608x3456", "4896x3672", "4608x3456", "4896x3672"}));
    CheckPhotoIsNeedInsert(4608, 3456);
    EXPECT_TRUE(isPhoto1100wTo1800w && isPhoto1300wTo1800w && isEnlargedSize());
    EXPECT_FALSE(isPhoto1300wTo1600w) << "its camera flag is not set";
    CheckPhotoIsNeedInsert(4208, 3120);
    EXPECT_TRUE(isPhoto1100wTo1800w);
    EXPECT_FALSE(isPhoto1300wTo1800w);
    CheckPhotoIsNeedInsert(3264, 2448);
    EXPECT_FALSE(isPhoto1100wTo1800w || isEnlargedSize());
    for (const EnlargedClass &enlarged : enlargedClasses())
        *enlarged.camera = true;
    for (const QString &size : offered()) // stretching must not show
        EXPECT_NEAR(parseSize(size).height() * 4.0 / parseSize(size).width(), 3, 0.12)
            << size.toStdString();
}

TEST_F(Resolutions, TheClassWithoutAPhotoFlagLosesItsSizeOnceAnotherIsChosen)
{
    is800wTo1000w = true;
    CheckPhotoIsNeedInsert(3672, 2856);
    EXPECT_TRUE(isEnlargedSize());
    EXPECT_EQ(offered(), QStringList{"3672x2856"});
    CheckPhotoIsNeedInsert(3264, 2448);
    EXPECT_FALSE(isEnlargedSize());
    EXPECT_TRUE(offered().isEmpty());
}

TEST_F(Resolutions, ReadSizesAndGiveTheAssistCameraTheLargestModestMode)
{
    EXPECT_EQ(assistResolution(m_modes), 3);
    EXPECT_EQ(assistResolution({{3264, 2448, 15}, {2592, 1944, 15}}), 1);
    EXPECT_EQ(assistResolution({{1080, 1920, 15}, {640, 480, 15}}), 1) << "too high";
    EXPECT_EQ(assistResolution({{0, 0, 0}}), -1);
    EXPECT_EQ(assistResolution({}), -1);

    EXPECT_EQ(parseSize("3264x2448"), QSize(3264, 2448));
    for (const char *text : {"", "x", "3264", "3264x", "x2448", "axb"})
        EXPECT_FALSE(parseSize(QLatin1String(text)).isValid()) << text;
}

} // namespace
