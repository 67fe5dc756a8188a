#include "camera/user_models.h"

#include "app/paths.h"
#include "app/settings.h"
#include "camera/resolution_list.h"

#include <QSettings>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace {

const QString kGroup = QStringLiteral("Cameras");
const QStringList kUses{QStringLiteral("main"), QStringLiteral("assist"), QStringLiteral("unused")};

std::optional<QVector<UserModel>> &cache()
{
    static std::optional<QVector<UserModel>> models;
    return models;
}

QString nameOf(int enlargedClass)
{
    const std::string_view name = enlargedClasses()[static_cast<size_t>(enlargedClass)].name;
    return QString::fromLatin1(name.data(), static_cast<int>(name.size()));
}

// -1 for none. By name, since the numbers of the classes move when one is added; a bare number was
// written before they had names.
int enlargedClass(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return number >= 0 && number < kEnlargedClasses ? number : -1;
    for (int i = 0; i < kEnlargedClasses; ++i) {
        if (nameOf(i) == text)
            return i;
    }
    return -1;
}

QVector<UserModel> load()
{
    QVector<UserModel> models;
    QSettings ini(settingsPath(), QSettings::IniFormat);
    ini.beginGroup(kGroup);
    const QStringList ids = ini.childKeys();
    for (const QString &id : ids) {
        const QStringList words = ini.value(id).toString().split(QLatin1Char(' '));
        const int use = kUses.indexOf(words.value(0));
        if (use < 0)
            continue;
        models.append({id, static_cast<UserModel::Use>(use), enlargedClass(words.value(1))});
    }
    return models;
}

} // namespace

const QVector<UserModel> &userModels()
{
    if (!cache())
        cache() = load();
    return *cache();
}

const UserModel *userModel(const QString &id)
{
    for (const UserModel &model : userModels()) {
        if (model.id == id)
            return &model;
    }
    return nullptr;
}

void setUserModel(const UserModel &model)
{
    const UserModel *former = userModel(model.id);
    if (former && former->enlarged >= 0)
        *enlargedClasses()[static_cast<size_t>(former->enlarged)].camera = false;
    const QString text =
        model.enlarged < 0 ? kUses[model.use]
                           : QStringLiteral("%1 %2").arg(kUses[model.use], nameOf(model.enlarged));
    if (!areSettingsReadOnly) {
        QSettings ini(settingsPath(), QSettings::IniFormat);
        ini.beginGroup(kGroup);
        ini.setValue(model.id, text);
    }
    QVector<UserModel> models = userModels();
    models.erase(std::remove_if(models.begin(), models.end(),
                                [&model](const UserModel &known) { return known.id == model.id; }),
                 models.end());
    models.append(model);
    cache() = models;
}

void forgetUserModels()
{
    cache().reset();
}
