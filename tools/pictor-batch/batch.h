#pragma once

#include "options.h"

#include <QSet>

#include <functional>

class QJsonObject;

/// Carries out one run. Files of earlier runs are replaced, and the report names them; a picture
/// given as input and a file of the same run never are: the later one gets "-2", "-3", ... behind
/// its name. So does any file that exists, where names come from codes or the folder holds inputs.
class Batch
{
public:
    explicit Batch(BatchOptions options);

    /// Makes the output folder. False, with the cause in `error`, when that fails.
    bool prepare(QString &error) const;

    int size() const { return m_options.images.size(); }

    /// Treats image number `index` as one camera frame: what was found, written and measured, and
    /// "error" when something could not be done.
    QJsonObject capture(int index);

private:
    QStringList moveIntoPlace(const std::vector<std::string> &files, QJsonObject &report,
                              QString &error);
    QString freeName(const QString &name) const;

    BatchOptions m_options;
    bool m_keepsExisting = false;
    QSet<QString> m_taken; // full paths: inputs and files of this run
};
