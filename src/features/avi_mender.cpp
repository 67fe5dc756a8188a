#include "features/avi_mender.h"

#include <QFile>
#include <QVector>
#include <QtEndian>

#include <optional>

namespace {

constexpr qint64 kHeadBytes = 8;   // of a chunk: its name, then its size
constexpr qint64 kListBytes = 12;  // of a list: those and its kind
constexpr int kTotalFramesAt = 16; // in the main header's data
constexpr int kLengthAt = 32;      // in a stream header's data
constexpr int kStreamsMax = 8;

struct Chunk
{
    QByteArray name;
    quint32 size = 0;
    QByteArray kind; // of a list
};

/// An AVI file whose lists are read one level after the other.
class AviFile
{
public:
    explicit AviFile(const QString &path)
        : m_file(path)
    {
    }

    bool mend()
    {
        if (!m_file.open(QIODevice::ReadWrite) || !readHeaders() || m_movi < 0)
            return false;
        if (m_streams.isEmpty() || numberAt(m_streams.first() + kLengthAt) != 0)
            return false; // ended as it should
        const qint64 end = countPieces();
        writeAt(m_mainHeader + kTotalFramesAt, m_counts.first());
        for (int i = 0; i < m_streams.size(); ++i)
            writeAt(m_streams[i] + kLengthAt, m_counts[i]);
        for (const qint64 list : {m_movi, m_riff})
            writeAt(list + 4, static_cast<quint32>(end - list - kHeadBytes));
        return m_file.flush();
    }

private:
    std::optional<Chunk> chunkAt(qint64 place)
    {
        if (!m_file.seek(place))
            return {};
        const QByteArray head = m_file.read(kListBytes);
        if (head.size() < kHeadBytes)
            return {};
        return Chunk{head.left(4), qFromLittleEndian<quint32>(head.constData() + 4), head.mid(8)};
    }

    static qint64 padded(quint32 size) { return qint64{size} + (size & 1); }

    // Down into the lists of the header, up to the list of pictures.
    bool readHeaders()
    {
        const std::optional<Chunk> file = chunkAt(0);
        if (!file || file->name != "RIFF" || file->kind != "AVI ")
            return false;
        for (qint64 place = kListBytes; const auto chunk = chunkAt(place);) {
            const bool isList = chunk->name == "LIST";
            if (isList && chunk->kind == "movi") {
                m_movi = place;
                return m_mainHeader > 0;
            }
            if (chunk->name == "avih")
                m_mainHeader = place + kHeadBytes;
            if (chunk->name == "strh" && m_streams.size() < kStreamsMax)
                m_streams << place + kHeadBytes;
            const bool isEntered = isList && (chunk->kind == "hdrl" || chunk->kind == "strl");
            place += isEntered ? kListBytes : kHeadBytes + padded(chunk->size);
        }
        return false;
    }

    // Where the last whole piece ends. A piece is called by its stream, "00dc" or "01wb". A file of
    // more than a gigabyte has several parts, each with a list of its own.
    qint64 countPieces()
    {
        m_counts.fill(0, m_streams.size());
        qint64 place = m_movi;
        while (const auto chunk = chunkAt(place)) {
            if (chunk->name == "RIFF")
                m_riff = place;
            else if (chunk->name == "LIST")
                m_movi = place;
            if (chunk->name == "RIFF" || chunk->name == "LIST") {
                place += kListBytes;
                continue;
            }
            const qint64 next = place + kHeadBytes + padded(chunk->size);
            bool isNumber = false;
            const int stream = chunk->name.left(2).toInt(&isNumber);
            const bool isPiece = isNumber && stream >= 0 && stream < m_counts.size();
            const bool isIndex = chunk->name.startsWith("ix") || chunk->name == "idx1";
            if (next > m_file.size() || !(isPiece || isIndex || chunk->name == "JUNK"))
                break;
            if (isPiece)
                ++m_counts[stream];
            place = next;
        }
        return place;
    }

    quint32 numberAt(qint64 place)
    {
        const QByteArray bytes = m_file.seek(place) ? m_file.read(4) : QByteArray();
        return bytes.size() == 4 ? qFromLittleEndian<quint32>(bytes.constData()) : 0;
    }

    void writeAt(qint64 place, quint32 number)
    {
        const quint32 bytes = qToLittleEndian(number);
        if (m_file.seek(place))
            m_file.write(reinterpret_cast<const char *>(&bytes), sizeof bytes);
    }

    QFile m_file;
    qint64 m_mainHeader = 0;   // place of its data
    qint64 m_riff = 0;         // place of the last part of the file
    qint64 m_movi = -1;        // place of the list of pictures in it
    QVector<qint64> m_streams; // places of their headers' data
    QVector<quint32> m_counts;
};

} // namespace

bool mendAvi(const QString &path)
{
    return AviFile(path).mend();
}
