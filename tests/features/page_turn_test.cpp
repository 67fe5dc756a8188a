#include "features/page_turn.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Feeds samples written as letters, s still, c changed, - no sheet, and returns the position of
// each shot.
std::string shots(PageTurnMachine &machine, const std::string &samples)
{
    using Sample = PageTurnMachine::Sample;
    std::string found;
    for (size_t i = 0; i < samples.size(); ++i) {
        const Sample sample = samples[i] == 's'   ? Sample::Still
                              : samples[i] == 'c' ? Sample::Changed
                                                  : Sample::NoSheet;
        const auto answer = machine.take(sample);
        EXPECT_EQ(answer == PageTurnMachine::Answer::Changing, samples[i] == 'c');
        if (answer == PageTurnMachine::Answer::Shoot)
            found += std::to_string(i) + ' ';
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

TEST_F(PageTurnTest, ANextPageNeedsThreeChangesThenSixteenStillSamplesInARow)
{
    shootFirstPage();
    EXPECT_EQ(shots(machine, still(30) + "c" + still(30) + "c" + still(30)), "");
    EXPECT_EQ(shots(machine, "c" + still(15)), "") << "third change, one still sample short";
    EXPECT_EQ(shots(machine, "c" + still(16)), "16 ") << "the row starts again after a change";
    EXPECT_EQ(shots(machine, "ccc" + still(16)), "18 ");
}

TEST_F(PageTurnTest, WithoutASheetNothingIsEverShot)
{
    EXPECT_EQ(shots(machine, std::string(500, '-')), "");
    EXPECT_EQ(shots(machine, still(8) + "--" + still(8)), "17 ") << "counted samples are kept";
}

TEST_F(PageTurnTest, StopAndStartKeepTheCounts)
{
    shots(machine, still(10));
    machine.stop();
    machine.start();
    EXPECT_EQ(shots(machine, still(6)), "5 ");

    shots(machine, "cc");
    machine.stop();
    machine.start();
    EXPECT_EQ(shots(machine, still(16)), "15 ") << "armed again, the page may be shot once more";
    EXPECT_EQ(shots(machine, "c" + still(30)), "") << "the shot has set the changes back";
}
