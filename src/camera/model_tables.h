#pragma once

#include "camera/resolution_list.h"

#include <QString>

#include <array>
#include <string_view>

/// The camera models that the program serves, by USB vendor and product ID. A camera's ID is the
/// last eight characters of its unique ID, lower-case hexadecimal; all comparisons are
/// case-sensitive.
struct CameraModel
{
    std::string_view vendor;
    std::string_view product;
};

/// One row of the enlarged-size table: the model and the class whose camera flag it sets.
struct EnlargedModel
{
    CameraModel model;
    EnlargedSizes sizes{};
};

constexpr int kMainModels = 32;
constexpr int kMainModelsScanned = 27; ///< later rows are listed but never matched
constexpr int kAssistModels = 4;
constexpr int kEnlargedModels = 25;

extern const std::array<QString, kMainModels> vid;    ///< main models: vendor IDs
extern const std::array<QString, kMainModels> pid;    ///< main models: product IDs
extern const std::array<QString, kAssistModels> vid2; ///< assist models: vendor IDs
extern const std::array<QString, kAssistModels> pid2; ///< assist models: product IDs

/// Rows of the enlarged-size table, in the order in which they are applied.
const std::array<EnlargedModel, kEnlargedModels> &enlargedModels();

/// True when the pair stands in one of the scanned rows of the main table.
bool isMainModel(const QString &vendor, const QString &product);

/// Number of rows of the assist table that hold the pair.
int assistModelRows(const QString &vendor, const QString &product);

/// Sets the enlarged-size flag of every row that holds the pair; clears none.
void CheckInsertValue(const QString &vendor, const QString &product);
