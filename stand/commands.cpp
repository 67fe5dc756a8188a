#include "stand/button_line.h"
#include "stand/motion.h"
#include "stand/stand.h"

namespace {

const QString kOk = QStringLiteral("ok");
constexpr int kMostSpoiltFrames = 100000;
constexpr int kMostFlicker = 100;

QString failure(const QString &reason)
{
    return QStringLiteral("error: ") + reason;
}

} // namespace

QString Stand::command(const QString &line)
{
    const QString text = line.trimmed();
    const QString name = text.section(QLatin1Char(' '), 0, 0);
    const QString argument = text.section(QLatin1Char(' '), 1).trimmed();
    const QStringList words = argument.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (name == QLatin1String("scene"))
        return showScenes(argument);
    if (name == QLatin1String("next"))
        return showNext();
    if (name == QLatin1String("turn"))
        return turnToNext();
    if (name == QLatin1String("hand"))
        return showHand(argument);
    if (name == QLatin1String("flicker"))
        return flicker(argument);
    if (name == QLatin1String("clear"))
        return clearDesk();
    if (name == QLatin1String("press"))
        return press(argument);
    if (name == QLatin1String("bytes"))
        return sendBytes(argument);
    if (name == QLatin1String("plug"))
        return plug(argument);
    if (name == QLatin1String("unplug"))
        return unplug(argument);
    if (name == QLatin1String("stall"))
        return stall(words);
    if (name == QLatin1String("corrupt") || name == QLatin1String("oddsize"))
        return spoilFrames(name, words);
    if (name == QLatin1String("focus"))
        return focus(argument);
    if (name == QLatin1String("controls"))
        return controls(argument);
    if (name == QLatin1String("control"))
        return setControl(words);
    if (name == QLatin1String("quit")) {
        emit quitRequested();
        return kOk;
    }
    return failure(QStringLiteral("unknown command %1").arg(name));
}

void Stand::layOnDesk(const Scene &scene)
{
    m_onDesk = scene;
    m_cameras.front().camera->show(scene);
    emit sceneChanged();
}

QString Stand::showScenes(const QString &argument)
{
    const QString assist = QStringLiteral("assist ");
    const bool isAssist = argument.startsWith(assist);
    QString fault;
    const std::vector<Scene> found =
        findScenes(isAssist ? argument.mid(assist.size()).trimmed() : argument, &fault);
    if (found.empty())
        return failure(fault);
    if (isAssist) {
        CameraPort *port = findCamera(QStringLiteral("assist"));
        if (!port)
            return failure(QStringLiteral("there is no device assist"));
        port->camera->show(found.front());
        return kOk;
    }
    m_scenes = found;
    m_position = 0;
    layOnDesk(m_scenes[m_position]);
    return kOk;
}

QString Stand::showNext()
{
    m_position = (m_position + 1) % m_scenes.size();
    layOnDesk(m_scenes[m_position]);
    return kOk;
}

QString Stand::turnToNext()
{
    if (m_scenes.size() < 2 || m_onDesk.sheets.empty())
        return failure(QStringLiteral("there are no pages to turn: lay a book or a folder"));
    StandCamera &camera = *m_cameras.front().camera;
    const Motion motion = turnPage(m_onDesk);
    m_position = (m_position + 1) % m_scenes.size();
    m_onDesk = m_scenes[m_position];
    camera.play(motion, m_onDesk);
    if (!m_onDesk.sheets.empty()) // who turns one page turns the next one, too
        camera.foresee(turnPage(m_onDesk), m_scenes[(m_position + 1) % m_scenes.size()]);
    emit sceneChanged();
    return kOk;
}

QString Stand::showHand(const QString &speed)
{
    const bool isSlow = speed == QLatin1String("slow");
    if (!isSlow && !speed.isEmpty())
        return failure(QStringLiteral("a hand passes as it is or slow"));
    m_cameras.front().camera->play(isSlow ? passHandSlowly() : passHand());
    return kOk;
}

QString Stand::flicker(const QString &grayLevels)
{
    bool isNumber = false;
    const int strength = grayLevels.toInt(&isNumber);
    if (!isNumber || strength < 0 || strength > kMostFlicker)
        return failure(QStringLiteral("flicker wants gray levels from 0 to %1").arg(kMostFlicker));
    for (const CameraPort &port : m_cameras)
        port.camera->setFlicker(strength);
    return kOk;
}

// The list of scenes stays: `next` goes on where it was.
QString Stand::clearDesk()
{
    layOnDesk(findScenes(QStringLiteral("empty")).front());
    return kOk;
}

QString Stand::press(const QString &button)
{
    const QByteArray frame = ButtonLine::buttonFrame(button);
    if (frame.isEmpty())
        return failure(QStringLiteral("the buttons are %1")
                           .arg(ButtonLine::buttonNames().join(QStringLiteral(", "))));
    return sendToButtons(frame);
}

QString Stand::sendBytes(const QString &hex)
{
    const QByteArray digits = hex.toLatin1().toLower();
    const QByteArray bytes = QByteArray::fromHex(digits);
    if (bytes.isEmpty() || bytes.toHex() != digits)
        return failure(QStringLiteral("bytes wants pairs of hexadecimal digits"));
    return sendToButtons(bytes);
}

QString Stand::sendToButtons(const QByteArray &bytes)
{
    if (!m_buttons)
        return failure(QStringLiteral("the buttons are unplugged"));
    if (!m_buttons->hasListener())
        return failure(QStringLiteral("no program has the button line open"));
    m_buttons->send(bytes);
    return kOk;
}

QString Stand::stall(const QStringList &words)
{
    CameraPort *port = findCamera(words.value(0));
    const bool isOn = words.value(1) == QLatin1String("on");
    if (!port || (!isOn && words.value(1) != QLatin1String("off")))
        return failure(QStringLiteral("stall wants a camera and on or off"));
    port->camera->setStalled(isOn);
    return kOk;
}

QString Stand::spoilFrames(const QString &name, const QStringList &words)
{
    CameraPort *port = findCamera(words.value(0));
    bool isNumber = false;
    const int count = words.value(1).toInt(&isNumber);
    if (!port || !isNumber || count < 0 || count > kMostSpoiltFrames)
        return failure(QStringLiteral("%1 wants a camera and a number of frames").arg(name));
    if (name == QLatin1String("corrupt"))
        port->camera->damageFrames(count);
    else
        port->camera->missizeFrames(count);
    return kOk;
}

QString Stand::focus(const QString &device)
{
    CameraPort *port = findCamera(device);
    if (!port)
        return failure(QStringLiteral("there is no camera %1").arg(device));
    port->camera->focus();
    return kOk;
}

QString Stand::controls(const QString &device)
{
    CameraPort *port = findCamera(device);
    if (!port)
        return failure(QStringLiteral("there is no camera %1").arg(device));
    QString answer = kOk;
    for (const int value : port->camera->controls())
        answer += QStringLiteral(" %1").arg(value);
    return answer;
}

QString Stand::setControl(const QStringList &words)
{
    CameraPort *port = findCamera(words.value(0));
    bool isKind = false, isValue = false;
    const int kind = words.value(1).toInt(&isKind), value = words.value(2).toInt(&isValue);
    if (!port || !isKind || !isValue || kind < 0 || kind >= CameraControl::kKinds ||
        !port->camera->setControl(static_cast<CameraControl::Kind>(kind), value))
        return failure(QStringLiteral("control wants a camera, one of its controls and a value"));
    return kOk;
}
