#include "app/state.h"
#include "mainwindow/button_port.h"
#include "support/fake_platform.h"

#include <QTest>

#include <gtest/gtest.h>

#include <pty.h>
#include <unistd.h>

namespace {

/// The far end of a serial line.
class Line
{
public:
    Line()
    {
        int slave = -1;
        char name[64] = {};
        if (openpty(&m_master, &slave, name, nullptr, nullptr) == 0)
            close(slave);
        m_name = QString::fromLatin1(name);
    }
    ~Line() { close(m_master); }
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    SerialPortEntry port(const char *name) const
    {
        return {QString::fromLatin1(name), m_name, {}, {}, {}};
    }
    void send(const QByteArray &bytes) const
    {
        EXPECT_EQ(write(m_master, bytes.constData(), static_cast<size_t>(bytes.size())),
                  bytes.size());
    }

private:
    int m_master = -1;
    QString m_name;
};

class ButtonPort : public testing::Test
{
protected:
    ~ButtonPort() override
    {
        closeButtonPort();
        setPlatform(nullptr);
    }
    bool open()
    {
        return openButtonPort([this] { m_received += readButtonPort(); });
    }

    FakePlatform *const m_platform = FakePlatform::install();
    QByteArray m_received;
};

} // namespace

TEST_F(ButtonPort, TakesTheLastAdapterThatOpensAndNoOtherPort)
{
    const Line other, first, second;
    m_platform->ports = {other.port("cu.usbserial-1")};
    EXPECT_FALSE(open());
    m_platform->ports = {first.port("tty.usbserial-1"),
                         second.port("tty.usbserial-2"),
                         {QStringLiteral("tty.usbserial-3"), QStringLiteral("/none"), {}, {}, {}},
                         other.port("cu.usbserial-1")};
    ASSERT_TRUE(open());
    first.send("no");
    second.send("yes");
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_received == "yes"; })) << m_received.constData();
}
