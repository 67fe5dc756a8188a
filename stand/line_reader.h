#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;

/// Turns what arrives on a file descriptor into lines, without blocking the event loop. At the
/// end of the input it falls silent.
class LineReader : public QObject
{
    Q_OBJECT

public:
    explicit LineReader(int file);

signals:
    void line(const QString &text);

private:
    void readSome();

    int m_file;
    QByteArray m_rest;
    QSocketNotifier *m_notifier;
};
