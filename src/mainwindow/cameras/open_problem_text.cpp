#include "mainwindow/cameras/open_problem_text.h"

#include <QCoreApplication>

QString openProblemText(const OpenProblem &problem)
{
    const auto say = [](const char *text) {
        return QCoreApplication::translate("MainWindow", text);
    };
    switch (problem.kind) {
    case OpenProblem::Unknown:
        break;
    case OpenProblem::Forbidden:
        return say(QT_TRANSLATE_NOOP("MainWindow",
                                     "You are not permitted to use %1. Have your user added to the "
                                     "group \"video\" (sudo usermod -aG video NAME), then log in "
                                     "again."))
            .arg(problem.device);
    case OpenProblem::Busy:
        if (problem.holder.isEmpty())
            return say(QT_TRANSLATE_NOOP("MainWindow",
                                         "Another program is using it. Close that program; the "
                                         "next try follows by itself."));
        return say(QT_TRANSLATE_NOOP("MainWindow",
                                     "The program \"%1\" is using it. Close that program; the "
                                     "next try follows by itself."))
            .arg(problem.holder);
    }
    return {};
}
