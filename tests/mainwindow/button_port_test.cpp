#include "mainwindow/cameras/button_port.h"
#include "support/fake_platform.h"

#include <QTest>

#include <gtest/gtest.h>

#include <pty.h>
#include <unistd.h>

namespace {

/// A serial line whose far end the test holds.
struct Line
{
    Line()
    {
        int slave = -1;
        char name[64] = {};
        if (openpty(&farEnd, &slave, name, nullptr, nullptr) == 0)
            close(slave);
        location = QString::fromLatin1(name);
    }
    ~Line() { close(farEnd); }

    int farEnd = -1;
    QString location;
};

} // namespace

TEST(ButtonPort, TakesTheLastAdapterThatOpensAndNoOtherPort)
{
    FakePlatform *const fake = FakePlatform::install();
    QByteArray received;
    const auto open = [&] { return openButtonPort([&] { received += readButtonPort(); }); };
    const Line other, first, second;
    const SerialPortEntry callOut{"cu.usbserial-1", other.location, {}, {}, {}};
    fake->ports = {callOut};
    EXPECT_FALSE(open());
    fake->ports = {{"tty.usbserial-1", first.location, {}, {}, {}},
                   {"tty.usbserial-2", second.location, {}, {}, {}},
                   {"tty.usbserial-3", "/none", {}, {}, {}},
                   callOut};
    ASSERT_TRUE(open());
    EXPECT_EQ(write(first.farEnd, "no", 2), 2);
    EXPECT_EQ(write(second.farEnd, "yes", 3), 3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return received == "yes"; })) << received.constData();
    closeButtonPort();
    setPlatform(nullptr);
}
