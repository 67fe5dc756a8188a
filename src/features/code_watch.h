#pragma once

#include "video/frame.h"

#include <QObject>
#include <QPolygonF>
#include <QSize>
#include <QStringList>
#include <QThread>
#include <QVector>

/// A code in the live picture.
struct SeenCode
{
    QString name;      ///< what a file would be called after it; not empty
    QPolygonF corners; ///< pixels of the rotated frame; of a bar code one line may be all
};

/// The codes of one frame, in reading order.
struct SeenCodes
{
    QVector<SeenCode> codes;
    QSize frame;   ///< after rotation, camera pixels
    int angle = 0; ///< clockwise rotation of the frame, degrees
};

/// Looks for codes in the live picture, on few pixels and in a thread of its own. Public members
/// are for the owner's thread and return at once.
class CodeWatch : public QObject
{
    Q_OBJECT

public:
    explicit CodeWatch(QObject *parent = nullptr);
    ~CodeWatch() override;

    /// Looks at `frame`, unless the look before is still under way; answers whether it does.
    /// `type`: 0 bar codes, 1 QR codes.
    bool look(const FramePtr &frame, int type);

signals:
    /// What the last look saw. A code that nothing vouches for has been seen twice in a row.
    void looked(const SeenCodes &seen);

private:
    SeenCodes seenIn(const Frame &frame, int type);

    QThread m_thread;
    QObject m_worker; // lives in that thread
    bool m_isLooking = false;
    QStringList m_unsafe; // texts of the look before; the worker's
};

Q_DECLARE_METATYPE(SeenCodes)
