#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Shows the busy cursor while it lives.
class BusyCursor
{
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(QCursor(Qt::BusyCursor)); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};
