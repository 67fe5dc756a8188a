#include "app/state.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/capture/taken_numbers.h"
#include "support/temporary_home.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

QDateTime noon()
{
    return QDateTime({2026, 3, 9}, {7, 5, 2, 4});
}

TEST(FileNaming, FollowsTheRule)
{
    int counter = 12;
    FileNaming naming(counter, noon);
    const QString stamp = "20260309070502004";
    EXPECT_EQ(naming.nameFor(NameCustom, {" my page. ", "7"}), " my page. ");
    EXPECT_EQ(naming.nameFor(NameCustom, {"", "7"}), stamp);
    EXPECT_EQ(counter, 12);
    EXPECT_EQ(naming.nameFor(NameByNumber, {"page", ""}), "page12");
    EXPECT_TRUE(naming.advance(NameByTime).isNull());
    EXPECT_EQ(counter, 12);
    EXPECT_EQ(extensionFor(5), ".jpg");
}

TEST(FileNaming, CountsOnFromWhatTheFieldShowsOrRestartsThere)
{
    int counter = 0;
    FileNaming naming(counter, noon);
    QString field = "0";
    const auto capture = [&] {
        const QString name = naming.nameFor(NameByNumber, {"", field});
        field = naming.advance(NameByNumber);
        return name;
    };
    EXPECT_EQ(capture(), "0");
    EXPECT_EQ(field, "0");
    EXPECT_EQ(capture(), "1");
    EXPECT_EQ(capture(), "2");
    // A capture that failed takes its number again.
    EXPECT_EQ(naming.nameFor(NameByNumber, {"", field}), "3");
    EXPECT_EQ(capture(), "3");
    field = "5";
    EXPECT_EQ(capture(), "5");
    EXPECT_EQ(capture(), "6");
    field.clear();
    EXPECT_EQ(capture(), "7");
    field = "+"; // half typed
    EXPECT_EQ(capture(), "8");
    field = "2"; // back: overwrites, as intended
    EXPECT_EQ(capture(), "2");
    EXPECT_EQ(counter, 3);
}

TEST(FileNaming, FailedCapturesGiveTheirNumbersBackUntilALaterOneIsUsed)
{
    TakenNumbers numbers;
    const auto first = numbers.take(0, "0"), second = numbers.take(1, "0");
    const auto third = numbers.take(2, "1");
    EXPECT_FALSE(numbers.giveBack(second, 3)) << "the third has its number and keeps it";
    const auto rest = numbers.giveBack(third, 3);
    ASSERT_TRUE(rest) << "both are free now";
    EXPECT_EQ(rest->next, 1);
    EXPECT_EQ(rest->shown, "0");
    numbers.take(1, "0");
    EXPECT_FALSE(numbers.giveBack(first, 2)) << "taken again, and not failed this time";
    numbers.restart();
    EXPECT_FALSE(numbers.giveBack(first, 1)) << "of another sequence";

    const TemporaryHome home;
    EXPECT_EQ(nextNumberIn(home.path(), "a", {home.path() + "/a6.jpg", "/elsewhere/a9.jpg"}), 7);
}

TEST(FileNaming, MakesTheNamedFolderOneLevelDeep)
{
    const TemporaryHome home;
    EXPECT_EQ(makeNameFolder(home.path(), ""), home.path());
    EXPECT_EQ(makeNameFolder(home.path(), "books"), home.path() + "/books");
    EXPECT_TRUE(QDir(home.path() + "/books").exists());
    EXPECT_EQ(makeNameFolder(home.path() + "/gone", "books"), home.path() + "/gone/books");
    EXPECT_FALSE(QDir(home.path() + "/gone").exists());
}

TEST(FileNaming, RefusesWhatNoFileCanBeCalled)
{
    EXPECT_TRUE(fileNameProblem(QString::fromUtf8("Übung 3, 图 (a) \"b\"?")).isEmpty());
    EXPECT_TRUE(fileNameProblem("a/b").contains("\"/\""));
    for (const char *bad : {"a\\b", "a:b", "a\nb", ".", "..", ".hidden"})
        EXPECT_FALSE(fileNameProblem(bad).isEmpty()) << bad;
    EXPECT_TRUE(fileNameProblem(QString(200, 'a')).isEmpty());
    EXPECT_FALSE(fileNameProblem(QString(256, 'a')).isEmpty());
    EXPECT_FALSE(fileNameProblem(QString(100, QChar(0x56fe))).isEmpty()); // 300 bytes

    EXPECT_FALSE(namingProblem(NameByNumber, {"a/", "3"}).isEmpty());
    EXPECT_TRUE(namingProblem(NameByNumber, {"", "3"}).isEmpty());
    EXPECT_TRUE(namingProblem(NameByTime, {"a/b", ""}).isEmpty());
}

} // namespace
