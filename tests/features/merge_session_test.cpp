#include "features/merge_session.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

class MergeSessionTest : public testing::Test
{
protected:
    int pages = 2, dir = 0, count = 0;
    std::vector<QString> paths;
    MergeSession session{{pages, dir, count, paths}};
};

TEST_F(MergeSessionTest, TheLastPageCompletesTheMergeInTheDirectionThenInForce)
{
    pages = 3;
    EXPECT_EQ(session.addPage("a").thumbnail, 1);
    EXPECT_EQ(session.addPage("b").thumbnail, 2);
    EXPECT_EQ(count, 2);
    EXPECT_THAT(paths, ElementsAre("a", "b"));

    dir = 1;
    const MergeStep last = session.addPage("c");
    EXPECT_EQ(last.thumbnail, 3);
    ASSERT_TRUE(last.job);
    EXPECT_THAT(last.job->pages, ElementsAre("a", "b", "c"));
    EXPECT_EQ(last.job->dir, 1);
    EXPECT_TRUE(session.isEmpty());
}

TEST_F(MergeSessionTest, APressBeforeTheMergeIsDoneStartsAfresh)
{
    session.addPage("a");
    const MergeStep done = session.addPage("b");
    const MergeStep next = session.addPage("c");
    EXPECT_EQ(next.thumbnail, 1);
    EXPECT_FALSE(next.job);
    EXPECT_THAT(done.job->pages, ElementsAre("a", "b"));
    EXPECT_THAT(paths, ElementsAre("c"));
}

TEST_F(MergeSessionTest, FewerPagesThanTakenBlockUntilMoreAreChosen)
{
    pages = 4;
    for (const char *path : {"a", "b", "c"})
        session.addPage(path);
    pages = 2;
    EXPECT_FALSE(session.wantsPage());
    pages = 4;
    ASSERT_TRUE(session.wantsPage());
    EXPECT_TRUE(session.addPage("d").job);
    EXPECT_THAT(paths, IsEmpty());
}
