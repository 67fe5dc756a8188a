#pragma once

#include "app/choices.h"

#include <QCoreApplication>
#include <QStringList>

/// The entries of a box, in order. English passes through the window's translations. GUI thread.
inline QStringList choiceTexts(const Choices &choices, bool isChinese)
{
    QStringList texts;
    for (const Choice &choice : choices)
        texts << (isChinese ? QString::fromUtf8(choice.chinese)
                            : QCoreApplication::translate("MainWindow", choice.english));
    return texts;
}
