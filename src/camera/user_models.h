#pragma once

#include <QString>
#include <QVector>

/// What the user has said about a camera model of his: kept in the settings file by vendor and
/// product, so that it holds for every port and after every plugging. It goes before the tables.
/// GUI thread.
struct UserModel
{
    enum Use { Main, Assist, Unused };
    QString id; ///< vendor and product, eight hexadecimal digits as in the camera's unique ID
    Use use = Unused;
    int enlarged = -1; ///< class of enlarged sizes (EnlargedSizes); -1 for none
};

/// The user's models; read from the settings file at the first call.
const QVector<UserModel> &userModels();

/// The user's model with this ID; null when he has said nothing about it.
const UserModel *userModel(const QString &id);

/// Adds `model` or replaces the one of its ID, and saves it in the settings file, group "Cameras".
/// Clears the flag of the class that the model had before.
void setUserModel(const UserModel &model);

/// Forgets what was read, so that the next call reads the settings file again.
void forgetUserModels();
