#include "platform/joined_platform.h"

#include "platform/fed_recording.h"

#include <algorithm>
#include <utility>

JoinedPlatform::JoinedPlatform(std::vector<std::unique_ptr<Platform>> parts)
    : m_parts(std::move(parts))
{
}

// An index behind the last camera belongs to the last platform, which knows how to fail.
JoinedPlatform::Place JoinedPlatform::placeOf(int index) const
{
    for (size_t i = 0; i + 1 < m_parts.size(); ++i) {
        const int count = m_parts[i]->cameras().size();
        if (index < count)
            return {m_parts[i].get(), index};
        index -= count;
    }
    return {m_parts.back().get(), index};
}

QList<CameraInfo> JoinedPlatform::cameras() const
{
    QList<CameraInfo> list;
    for (const auto &part : m_parts)
        list += part->cameras();
    return list;
}

QStringList JoinedPlatform::deviceFolders() const
{
    QStringList folders;
    for (const auto &part : m_parts)
        folders += part->deviceFolders();
    return folders;
}

QList<CameraMode> JoinedPlatform::modes(int index) const
{
    const Place place = placeOf(index);
    return place.part->modes(place.index);
}

CaptureSource JoinedPlatform::captureSource(int index, const QString &size,
                                            const QString &rate) const
{
    const Place place = placeOf(index);
    return place.part->captureSource(place.index, size, rate);
}

// The probe sees the same joined list.
QString JoinedPlatform::probeCommand(const QString &, int index) const
{
    return pictorProbeCommand(index);
}

// The sound may come from another part than the picture.
QString JoinedPlatform::recordCommand(const RecordRequest &request) const
{
    return fedRecordCommand(request, requestedSound(*this, request));
}

QString JoinedPlatform::deviceListCommand(const QString &ffmpeg) const
{
    return m_parts.front()->deviceListCommand(ffmpeg);
}

QStringList JoinedPlatform::audioInputs() const
{
    QStringList names;
    for (const auto &part : m_parts)
        names += part->audioInputs();
    return names;
}

SoundInput JoinedPlatform::soundInput(int index) const
{
    for (const auto &part : m_parts) {
        const int count = part->audioInputs().size();
        if (index < count)
            return part->soundInput(index);
        index -= count;
    }
    return {};
}

int JoinedPlatform::microphoneOf(int index) const
{
    const Place place = placeOf(index);
    const int own = place.part->microphoneOf(place.index);
    int before = 0;
    for (size_t i = 0; own >= 0 && m_parts[i].get() != place.part; ++i)
        before += m_parts[i]->audioInputs().size();
    return own < 0 ? -1 : before + own;
}

QList<SerialPortEntry> JoinedPlatform::serialPorts() const
{
    QList<SerialPortEntry> ports;
    for (const auto &part : m_parts)
        ports += part->serialPorts();
    return ports;
}

bool JoinedPlatform::isButtonAdapter(const SerialPortEntry &port) const
{
    return std::any_of(m_parts.begin(), m_parts.end(),
                       [&port](const auto &part) { return part->isButtonAdapter(port); });
}

bool JoinedPlatform::canFocus(int index) const
{
    const Place place = placeOf(index);
    return place.part->canFocus(place.index);
}

bool JoinedPlatform::focus(int index)
{
    const Place place = placeOf(index);
    return place.part->focus(place.index);
}

QList<CameraControl> JoinedPlatform::controls(int index) const
{
    const Place place = placeOf(index);
    return place.part->controls(place.index);
}

bool JoinedPlatform::setControl(int index, CameraControl::Kind kind, int value)
{
    const Place place = placeOf(index);
    return place.part->setControl(place.index, kind, value);
}

OpenProblem JoinedPlatform::openProblem(int index) const
{
    const Place place = placeOf(index);
    return place.part->openProblem(place.index);
}
