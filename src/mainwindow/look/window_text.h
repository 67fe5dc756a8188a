#pragma once

#include <QCoreApplication>

/// `WindowText::tr("...")`: texts of the window's parts, all in the window's translation context.
class WindowText
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};
