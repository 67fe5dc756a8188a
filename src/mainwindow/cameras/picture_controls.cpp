#include "mainwindow/cameras/picture_controls.h"

#include "app/paths.h"
#include "app/settings.h"
#include "platform/platform.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSettings>

namespace {

const QString kGroup = QStringLiteral("Picture");
constexpr int kIdDigits = 8;

using Values = QMap<CameraControl::Kind, int>;

const QStringList &names()
{
    static const QStringList list{
        QStringLiteral("brightness"),   QStringLiteral("contrast"),
        QStringLiteral("saturation"),   QStringLiteral("sharpness"),
        QStringLiteral("powerLine"),    QStringLiteral("autoExposure"),
        QStringLiteral("exposure"),     QStringLiteral("autoWhiteBalance"),
        QStringLiteral("whiteBalance"), QStringLiteral("autoFocus"),
        QStringLiteral("focus")};
    return list;
}

// Those of this very camera, otherwise those of one of its model: it may have moved to another
// port.
Values keptFor(const QString &id)
{
    Values values;
    QSettings ini(settingsPath(), QSettings::IniFormat);
    ini.beginGroup(kGroup);
    QString group = id;
    if (!ini.childGroups().contains(id)) {
        const QStringList groups = ini.childGroups();
        for (const QString &other : groups) {
            if (other.right(kIdDigits) == id.right(kIdDigits))
                group = other;
        }
    }
    ini.beginGroup(group);
    const QStringList keys = ini.childKeys();
    for (const QString &key : keys) {
        bool isNumber = false;
        const int kind = names().indexOf(key), value = ini.value(key).toInt(&isNumber);
        if (kind >= 0 && isNumber)
            values[static_cast<CameraControl::Kind>(kind)] = value;
    }
    return values;
}

void keep(const QString &id, const Values &values)
{
    if (areSettingsReadOnly)
        return;
    QSettings ini(settingsPath(), QSettings::IniFormat);
    ini.beginGroup(kGroup);
    ini.beginGroup(id);
    ini.remove(QString());
    // Otherwise what another port has would come back.
    if (values.isEmpty())
        ini.setValue(QStringLiteral("defaults"), true);
    for (auto value = values.begin(); value != values.end(); ++value)
        ini.setValue(names()[value.key()], value.value());
}

int indexOf(const QString &id)
{
    const QList<CameraInfo> cameras = platform().cameras();
    for (int i = 0; i < cameras.size(); ++i) {
        if (cameras[i].uniqueId == id)
            return i;
    }
    return -1;
}

bool isRuled(const QList<CameraControl> &list, CameraControl::Kind kind)
{
    for (const CameraControl &control : list) {
        if (control.kind == automaticOf(kind) && control.kind != kind)
            return control.value != 0;
    }
    return false;
}

} // namespace

struct PictureControls::Reading
{
    QString id;
    QList<CameraControl> list;
    bool canFocus = false;
};

PictureControls::PictureControls(QObject *parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
}

PictureControls::~PictureControls()
{
    m_pool.waitForDone();
}

void PictureControls::open(const QString &id)
{
    m_id = id;
    m_list.clear();
    m_canFocus = false;
    m_kept = id.isEmpty() ? Values() : keptFor(id);
    m_waiting = m_kept;
    m_isStale = !id.isEmpty();
    emit changed();
    tell();
}

void PictureControls::set(CameraControl::Kind kind, int value)
{
    m_kept[kind] = value;
    m_waiting[kind] = value;
    tell();
}

void PictureControls::setDefaults()
{
    m_kept.clear();
    for (const CameraControl &control : qAsConst(m_list))
        m_waiting[control.kind] = control.defaultValue;
    keep(m_id, m_kept);
    tell();
}

void PictureControls::tell()
{
    if (m_isTelling || (m_waiting.isEmpty() && !m_isStale))
        return;
    m_isTelling = true;
    m_isStale = false;
    const QString id = m_id;
    const Values values = m_waiting;
    m_waiting.clear();
    m_pool.start([this, id, values] {
        QElapsedTimer timer;
        timer.start();
        Reading reading{id, {}, false};
        const int index = indexOf(id);
        if (index >= 0) {
            reading.list = platform().controls(index);
            for (auto value = values.begin(); value != values.end(); ++value) {
                // Drivers refuse it, and the automatic would undo it.
                const bool isLeft = isRuled(reading.list, value.key());
                if (!isLeft && !platform().setControl(index, value.key(), value.value()))
                    qWarning() << "The camera refused" << names()[value.key()] << value.value();
                if (isAutomatic(value.key()))
                    reading.list = platform().controls(index);
            }
            if (!values.isEmpty())
                reading.list = platform().controls(index);
            reading.canFocus = platform().canFocus(index);
        }
        qDebug() << "Controls of the camera:" << reading.list.size() << "in" << timer.elapsed()
                 << "ms";
        QMetaObject::invokeMethod(
            this, [this, reading] { take(reading); }, Qt::QueuedConnection);
    });
}

void PictureControls::take(const Reading &reading)
{
    m_isTelling = false;
    if (reading.id == m_id) {
        m_list = reading.list;
        m_canFocus = reading.canFocus;
        if (m_waiting.isEmpty() && !m_kept.isEmpty())
            keep(m_id, m_kept);
        emit changed();
    }
    tell();
}
