#include "camera/model_tables.h"

#include <algorithm>

namespace {

// Pairs of vendor 1209 are those of camera stands in software, grouped by the class of their
// sensor; the others are document cameras in the public list of USB IDs.
constexpr std::array<CameraModel, kMainModels> kMainTable = {{
    {"1209", "0001"}, // 8 megapixels, no enlarged sizes
    {"1209", "0002"}, {"0839", "1012"}, {"1209", "0003"}, {"1209", "0011"}, {"1209", "0021"},
    {"1209", "0022"}, {"1209", "0023"}, {"1209", "0024"}, {"1209", "0003"}, {"1209", "0025"},
    {"1209", "0031"}, {"1209", "0032"}, {"1209", "0033"}, {"1209", "0034"}, {"1209", "0035"},
    {"1209", "0036"}, {"1209", "0037"}, {"1209", "0041"}, {"1209", "0042"}, {"1209", "0043"},
    {"1209", "0044"}, {"1209", "0051"}, {"1209", "0052"}, {"1209", "0053"}, {"1209", "0054"},
    {"1209", "00BE"}, // cameras report lower case, so this row matches none
    {"1209", "0026"}, // from here on not scanned
    {"1209", "0038"}, {"1209", "0045"}, {"1209", "0055"}, {"1209", "0004"},
}};

constexpr std::array<CameraModel, kAssistModels> kAssistTable = {{
    {"1209", "00a1"},
    {"1209", "00a2"},
    {"1209", "00a3"},
    {"1209", "00a4"},
}};

constexpr std::array<EnlargedModel, kEnlargedModels> kEnlargedTable = {{
    {{"1209", "0011"}, From500wTo800w},   {{"1209", "0021"}, From800wTo1000w},
    {{"1209", "0022"}, From800wTo1000w},  {{"1209", "0023"}, From800wTo1200w},
    {{"1209", "0024"}, From800wTo1300w},  {{"1209", "0025"}, From800wTo1300w},
    {{"1209", "0026"}, From800wTo1300w},  {{"1209", "0031"}, From1100wTo1300w},
    {{"1209", "0032"}, From1100wTo1400w}, {{"1209", "0033"}, From1100wTo1500w},
    {{"1209", "0034"}, From1100wTo1600w}, {{"1209", "0035"}, From1100wTo1600w},
    {{"1209", "0036"}, From1100wTo1600w}, {{"1209", "0038"}, From1100wTo1600w},
    {{"1209", "0037"}, From1100wTo1800w}, {{"1209", "0041"}, From1300wTo1600w},
    {{"1209", "0042"}, From1300wTo1800w}, {{"1209", "0043"}, From1300wTo1800w},
    {{"1209", "0045"}, From1300wTo1800w}, {{"1209", "0044"}, From1300wTo2200w},
    {{"1209", "0051"}, From1600wTo1800w}, {{"1209", "0052"}, From1600wTo2000w},
    {{"1209", "0053"}, From1600wTo2000w}, {{"1209", "0055"}, From1600wTo2000w},
    {{"1209", "0054"}, From1600wTo2100w},
}};

// ---- what the tables promise, checked by the compiler ------------------------------------------

constexpr bool sameModel(const CameraModel &a, const CameraModel &b)
{
    return a.vendor == b.vendor && a.product == b.product;
}

constexpr bool isHex(std::string_view id)
{
    for (const char c : id) {
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')))
            return false;
    }
    return id.size() == 4;
}

constexpr bool hasUpperCase(const CameraModel &model)
{
    for (const char c : model.product) {
        if (c >= 'A' && c <= 'F')
            return true;
    }
    return false;
}

template <size_t n>
constexpr bool allHex(const std::array<CameraModel, n> &table)
{
    for (const CameraModel &model : table) {
        if (!isHex(model.vendor) || !isHex(model.product))
            return false;
    }
    return true;
}

constexpr int upperCaseRows()
{
    int count = 0;
    for (const CameraModel &model : kMainTable)
        count += hasUpperCase(model) ? 1 : 0;
    return count;
}

constexpr bool isScanned(const CameraModel &model)
{
    for (size_t i = 0; i < kMainModelsScanned; ++i) {
        if (sameModel(kMainTable[i], model))
            return true;
    }
    return false;
}

constexpr bool tablesOverlap()
{
    for (const CameraModel &assist : kAssistTable) {
        for (const CameraModel &model : kMainTable) {
            if (sameModel(assist, model))
                return true;
        }
    }
    return false;
}

constexpr int unreachableEnlargedRows()
{
    int count = 0;
    for (const EnlargedModel &row : kEnlargedTable) {
        bool isListed = false;
        for (const CameraModel &model : kMainTable)
            isListed = isListed || sameModel(model, row.model);
        count += isListed && !isScanned(row.model) ? 1 : 0;
    }
    return count;
}

// Rows of one class, and how many of them a camera can reach.
struct RowCount
{
    int rows = 0;
    int reachable = 0;
};

constexpr RowCount rowsOf(EnlargedSizes sizes)
{
    RowCount count;
    for (const EnlargedModel &row : kEnlargedTable) {
        if (row.sizes == sizes) {
            ++count.rows;
            count.reachable += isScanned(row.model) ? 1 : 0;
        }
    }
    return count;
}

constexpr bool hasRows(EnlargedSizes sizes, int rows)
{
    return rowsOf(sizes).rows == rows && rowsOf(sizes).reachable > 0;
}

static_assert(allHex(kMainTable) && allHex(kAssistTable));
static_assert(sameModel(kMainTable[3], kMainTable[9]));
static_assert(upperCaseRows() == 1);
static_assert(!tablesOverlap(), "a main camera is never an assist camera");
static_assert(unreachableEnlargedRows() == 4);
static_assert(hasRows(From500wTo800w, 1) && hasRows(From800wTo1000w, 2) &&
              hasRows(From800wTo1200w, 1) && hasRows(From800wTo1300w, 3) &&
              hasRows(From1100wTo1300w, 1) && hasRows(From1100wTo1400w, 1) &&
              hasRows(From1100wTo1500w, 1) && hasRows(From1100wTo1600w, 4) &&
              hasRows(From1100wTo1800w, 1) && hasRows(From1300wTo1600w, 1) &&
              hasRows(From1300wTo1800w, 3) && hasRows(From1300wTo2200w, 1) &&
              hasRows(From1600wTo1800w, 1) && hasRows(From1600wTo2000w, 3) &&
              hasRows(From1600wTo2100w, 1));

// ---- lookups -----------------------------------------------------------------------------------

QLatin1String latin(std::string_view text)
{
    return QLatin1String(text.data(), static_cast<int>(text.size()));
}

template <size_t n>
std::array<QString, n> column(const std::array<CameraModel, n> &table,
                              std::string_view CameraModel::*id)
{
    std::array<QString, n> texts;
    std::transform(table.begin(), table.end(), texts.begin(),
                   [id](const CameraModel &model) { return latin(model.*id); });
    return texts;
}

} // namespace

const std::array<QString, kMainModels> vid = column(kMainTable, &CameraModel::vendor);
const std::array<QString, kMainModels> pid = column(kMainTable, &CameraModel::product);
const std::array<QString, kAssistModels> vid2 = column(kAssistTable, &CameraModel::vendor);
const std::array<QString, kAssistModels> pid2 = column(kAssistTable, &CameraModel::product);

const std::array<EnlargedModel, kEnlargedModels> &enlargedModels()
{
    return kEnlargedTable;
}

bool isMainModel(const QString &vendor, const QString &product)
{
    for (size_t i = 0; i < kMainModelsScanned; ++i) {
        if (vid[i] == vendor && pid[i] == product)
            return true;
    }
    return false;
}

int assistModelRows(const QString &vendor, const QString &product)
{
    int rows = 0;
    for (size_t i = 0; i < kAssistModels; ++i)
        rows += vid2[i] == vendor && pid2[i] == product ? 1 : 0;
    return rows;
}

void CheckInsertValue(const QString &vendor, const QString &product)
{
    for (const EnlargedModel &row : kEnlargedTable) {
        if (vendor == latin(row.model.vendor) && product == latin(row.model.product))
            *enlargedClasses()[row.sizes].camera = true;
    }
}
