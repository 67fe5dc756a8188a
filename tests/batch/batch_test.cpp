#include "support/files.h"
#include "support/sheet_images.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <csignal>
#include <sys/stat.h>

namespace {

class Batch : public FolderTest
{
protected:
    void write(const char *name, const cv::Mat &picture) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        ASSERT_TRUE(cv::imwrite(file(name), picture));
    }

    // Runs the program; its output must be one JSON object per line and nothing else.
    QList<QJsonObject> run(const QStringList &arguments, int expectedExit)
    {
        QProcess process;
        process.start(QStringLiteral(PICTOR_BATCH), arguments);
        EXPECT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode(), expectedExit) << process.readAllStandardError().toStdString();
        QList<QJsonObject> reports;
        for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
            if (line.isEmpty())
                continue;
            QJsonParseError error;
            reports << QJsonDocument::fromJson(line, &error).object();
            EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        }
        return reports;
    }

    static QStringList names(const QJsonObject &report)
    {
        QStringList list;
        for (const QJsonValue &file : report["files"].toArray())
            list << QFileInfo(file.toString()).fileName();
        return list;
    }

    cv::Mat twoSheets() const
    {
        sheets::Scene scene = sheets::desk({1000, 700});
        sheets::lay(scene, sheets::textPage({300, 420}), {250, 350}, 5);
        sheets::lay(scene, sheets::textPage({260, 360}), {700, 350}, -8);
        return scene.picture;
    }
};

} // namespace

TEST_F(Batch, CutsAFolderOfPicturesAndGoesOnAfterAFailure)
{
    write("in/a.png", twoSheets());
    write("in/c.jpg", twoSheets());
    writeFile(path("in/b.jpg"), "no picture");
    const QList<QJsonObject> reports =
        run({"--crop", "multi", "--format", "png", "-o", path("new/out"), path("in")}, 1);
    ASSERT_EQ(reports.size(), 3);
    EXPECT_EQ(reports[0]["input"], path("in/a.png"));
    EXPECT_EQ(reports[0]["size"].toArray(), QJsonArray({1000, 700}));
    ASSERT_EQ(reports[0]["outlines"].toArray().size(), 2);
    EXPECT_EQ(reports[0]["outlines"].toArray()[0].toArray().size(), 4);
    EXPECT_EQ(names(reports[0]), QStringList({"a.png", "a_1.png"}));
    EXPECT_GT(reports[0]["ms"].toObject()["capture"].toDouble(), 0);
    EXPECT_TRUE(reports[0]["ms"].toObject().contains("detect"));
    EXPECT_FALSE(reports[0].contains("error"));
    EXPECT_TRUE(reports[1].contains("error"));
    EXPECT_EQ(names(reports[2]), QStringList({"c.png", "c_1.png"}));
    const cv::Mat page = cv::imread(file("new/out/a.png"));
    EXPECT_NEAR(page.cols, 300, 12);
    EXPECT_NEAR(page.rows, 420, 12);
    EXPECT_EQ(QDir(path("new/out")).entryList(QDir::Files | QDir::Hidden).size(), 4);
}

TEST_F(Batch, SaysWhatItCouldNotTakeAsItIs)
{
    write("in/whole.jpg", twoSheets());
    const QByteArray jpeg = readFile(path("in/whole.jpg")), scan("\xff\xda");
    writeFile(path("in/cut.jpg"), jpeg.left(jpeg.size() / 2));
    QByteArray damaged = jpeg;
    damaged.replace(jpeg.size() / 2, 200, QByteArray(200, '\x55'));
    writeFile(path("in/damaged.jpg"), damaged);
    writeFile(path("in/motion.jpg"), jpeg.left(2) + '\xff' + jpeg.mid(2) + "a video" + scan);
    writeFile(path("in/empty.jpg"), "");
    ASSERT_EQ(mkfifo(file("in/pipe.jpg").c_str(), 0600), 0);
    writeFile(path("in/text.jpg"), "no picture");
    const std::vector<cv::Mat> sides(2, twoSheets());
    ASSERT_TRUE(cv::imwritemulti(file("in/sides.tif"), sides));
    write("in/clear.png", cv::Mat(40, 60, CV_8UC4, cv::Scalar(0, 0, 0, 0)));
    write("in/tall.png", cv::Mat(70000, 16, CV_8UC3, cv::Scalar::all(200)));
    const QStringList names{"missing.jpg", "cut.jpg",  "damaged.jpg", "motion.jpg",
                            "empty.jpg",   "pipe.jpg", "text.jpg",    "sides.tif",
                            "clear.png",   "tall.png", "whole.jpg",   "whole.jpg"};
    const char *const errors[] = {
        "no such file",         "cut off", "", "", "file is empty", "pipe", "no picture", "", "",
        "at most 65500 pixels", ""};
    QStringList arguments{"-o", path("out")};
    for (const QString &name : names)
        arguments << path("in/" + name);
    for (int round = 0; round < 2; ++round) {
        const QList<QJsonObject> reports = run(arguments, 1);
        ASSERT_EQ(reports.size(), 11); // what is named twice is taken once
        for (int i = 0; i < reports.size(); ++i) {
            const QString error = reports[i]["error"].toString();
            EXPECT_TRUE(error.contains(errors[i])) << names[i].toStdString();
            EXPECT_EQ(error.isEmpty(), *errors[i] == 0) << error.toStdString();
            EXPECT_FALSE(error.contains(".pictor-batch-")) << error.toStdString();
        }
        EXPECT_TRUE(reports[2]["note"].toString().contains("damaged"));
        EXPECT_TRUE(reports[7]["note"].toString().contains("first of 2")) << "the other side";
        EXPECT_EQ(reports[8].contains("replaced"), round == 1);
    }
    EXPECT_EQ(cv::imread(file("out/clear.jpg")).at<cv::Vec3b>(9, 9), cv::Vec3b::all(255));
}

TEST_F(Batch, NeverWritesOverAnInputOrAPageOfTheSameRun)
{
    const cv::Mat code =
        sheets::pageWith(sheets::barcode(sheets::Code::Code128, "LOT 7", 3, 80), {500, 300});
    write("a.png", code);
    write("sub/a.png", code);
    const QStringList arguments{"--format", "png",         "-o",
                                path("."),  path("a.png"), path("sub/a.png")};
    QList<QJsonObject> reports = run(arguments, 0);
    ASSERT_EQ(reports.size(), 2);
    EXPECT_EQ(names(reports[0]) + names(reports[1]), QStringList({"a-2.png", "a-3.png"}));

    reports = run(QStringList{"--code", "barcode", "--trim", "--colour", "gray"} + arguments, 0);
    ASSERT_EQ(reports.size(), 2);
    EXPECT_EQ(reports[0]["code"], "LOT 7");
    EXPECT_EQ(names(reports[0]) + names(reports[1]), QStringList({"LOT 7.png", "LOT 7-2.png"}));
}

TEST_F(Batch, TurnsFirstAndCutsTheManualRectangleThen)
{
    cv::Mat picture(60, 100, CV_8UC3, cv::Scalar::all(0));
    picture(cv::Rect(0, 0, 20, 10)).setTo(cv::Scalar::all(255)); // the top right after the turn
    write("a.png", picture);
    run({"--rotate", "90", "--crop", "manual=50,0,10,20", "--format", "bmp", "-o", path("out"),
         path("a.png")},
        0);
    const cv::Mat cut = cv::imread(file("out/a.bmp"));
    ASSERT_EQ(cut.size(), cv::Size(8, 20));
    EXPECT_EQ(cv::countNonZero(cut.reshape(1) == 255), 3 * 8 * 20);
}

TEST_F(Batch, RefusesWhatItDoesNotUnderstand)
{
    write("a.png", twoSheets());
    const QStringList good{"-o", path("out"), path("a.png")};
    for (const char *bad : {"--crop manual=1,2,3", "--colour blue", "--rotate 45", "--quality 0",
                            "--format gif", "--code text", "--nonsense"})
        EXPECT_TRUE(run(QString(bad).split(' ') + good, 2).isEmpty()) << bad;
    EXPECT_TRUE(run({path("a.png")}, 2).isEmpty());
    EXPECT_FALSE(QDir(path("out")).exists());
}

TEST_F(Batch, StopsCleanlyWhenToldTo)
{
    write("a.png", twoSheets());
    QStringList arguments{"-o", path("out")};
    for (int i = 0; i < 500; ++i) {
        QFile::link(path("a.png"), path(QString::number(i) + ".png"));
        arguments << path(QString::number(i) + ".png");
    }
    QProcess process;
    process.start(QStringLiteral(PICTOR_BATCH), arguments);
    ASSERT_TRUE(process.waitForReadyRead(30000));
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitCode(), 128 + SIGTERM);
    const QStringList written =
        QDir(path("out")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
    EXPECT_EQ(written.size(), process.readAllStandardOutput().count('\n'));
    EXPECT_TRUE(process.readAllStandardError().contains(" of 500 pictures"));
}
