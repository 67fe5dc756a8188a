#include "features/page_turn.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Page = PageTurnMachine::Page;

// Feeds samples written as letters, s still, c changed, - no sheet, with `page` under the camera,
// and returns the position of each shot. What was shot is the same page from then on.
std::string shots(PageTurnMachine &machine, const std::string &samples, Page page = Page::Same)
{
    using Sample = PageTurnMachine::Sample;
    std::string found;
    for (size_t i = 0; i < samples.size(); ++i) {
        const Sample sample = samples[i] == 's'   ? Sample::Still
                              : samples[i] == 'c' ? Sample::Changed
                                                  : Sample::NoSheet;
        const auto answer = machine.take(sample, [&] { return page; });
        EXPECT_EQ(answer == PageTurnMachine::Answer::Changing, samples[i] == 'c');
        if (answer == PageTurnMachine::Answer::Shoot) {
            found += std::to_string(i) + ' ';
            page = Page::Same;
        }
    }
    return found;
}

std::string still(int count)
{
    return std::string(static_cast<size_t>(count), 's');
}

class PageTurnTest : public testing::Test
{
protected:
    void SetUp() override { machine.start(); }
    void shootFirstPage() { ASSERT_EQ(shots(machine, still(16)), "15 "); }

    PageTurnMachine machine;
};

} // namespace

TEST_F(PageTurnTest, FirstPageIsShotAtItsSixteenthStillSampleAndOnlyOnce)
{
    EXPECT_EQ(shots(machine, still(200)), "15 ");
}

TEST_F(PageTurnTest, AnotherPageIsShotHoweverFewSamplesShowedTheTurn)
{
    for (int changes = 0; changes < 20; ++changes) {
        machine = {};
        machine.start();
        shootFirstPage();
        const std::string turn(static_cast<size_t>(changes), 'c');
        EXPECT_EQ(shots(machine, turn + still(15) + "c", Page::Other), "") << "not yet at rest";
        EXPECT_EQ(shots(machine, still(200), Page::Other), "15 ") << changes;
        EXPECT_EQ(shots(machine, turn + still(200), Page::Same), "") << "a hand passed " << changes;
    }
}

TEST_F(PageTurnTest, APageAlikeIsNewOnlyWhenSomethingMovedSinceTheShotPageWasSeen)
{
    shootFirstPage();
    EXPECT_EQ(shots(machine, still(64), Page::Alike), "") << "noise";
    EXPECT_EQ(shots(machine, "c" + still(32), Page::Alike), "16 ");
    shots(machine, "ccc" + still(16), Page::Same);
    EXPECT_EQ(shots(machine, still(64), Page::Alike), "");
}

TEST_F(PageTurnTest, WithoutASheetNothingIsEverShot)
{
    EXPECT_EQ(shots(machine, std::string(500, '-')), "");
    EXPECT_EQ(shots(machine, still(8) + "--" + still(8)), "17 ") << "counted samples are kept";
}

TEST_F(PageTurnTest, StartKeepsTheCountsAndTakesTheSamePageOnceMore)
{
    shots(machine, still(10));
    machine.start();
    EXPECT_EQ(shots(machine, still(6)), "5 ");
    machine.start();
    EXPECT_EQ(shots(machine, still(64)), "15 ");
}
