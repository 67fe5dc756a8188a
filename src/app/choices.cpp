#include "app/choices.h"

#include <QtGlobal>

const Choices &cropChoices()
{
    static const Choices choices{
        {QT_TRANSLATE_NOOP("MainWindow", "No crop"), "不裁切", "none"},
        {QT_TRANSLATE_NOOP("MainWindow", "Automatic crop"), "自动裁切", "auto"},
        {QT_TRANSLATE_NOOP("MainWindow", "Manual crop"), "手动裁切"}, // takes a rectangle
        {QT_TRANSLATE_NOOP("MainWindow", "Multi-graph crop"), "多图裁切", "multi"},
        {QT_TRANSLATE_NOOP("MainWindow", "Smart crop"), "智能裁切", "smart"},
    };
    return choices;
}

const Choices &effectChoices()
{
    static const Choices choices{
        {QT_TRANSLATE_NOOP("MainWindow", "Original color"), "原生色彩", "original"},
        {QT_TRANSLATE_NOOP("MainWindow", "Gray"), "灰度", "gray"},
        {QT_TRANSLATE_NOOP("MainWindow", "Binarization"), "黑白", "binarization"},
        {QT_TRANSLATE_NOOP("MainWindow", "Document optimization"), "文档优化", "optimization"},
    };
    return choices;
}

const Choices &namingChoices()
{
    static const Choices choices{
        {QT_TRANSLATE_NOOP("MainWindow", "No."), "编号"},
        {QT_TRANSLATE_NOOP("MainWindow", "Date and time"), "时间"},
        {QT_TRANSLATE_NOOP("MainWindow", "Custom"), "自定义"},
        {QT_TRANSLATE_NOOP("MainWindow", "Name as folder"), "以文件夹命名"},
        {QT_TRANSLATE_NOOP("MainWindow", "Barcode number"), "条码二维码"},
    };
    return choices;
}

const Choices &pictureFormats()
{
    static const Choices choices{
        {"JPG", "JPG", "jpg", ".jpg"}, {"BMP", "BMP", "bmp", ".bmp"}, {"PNG", "PNG", "png", ".png"},
        {"TIF", "TIF", "tif", ".tif"}, {"PDF", "PDF", "pdf", ".pdf"},
    };
    return choices;
}

const Choices &videoFormats()
{
    static const Choices choices{
        {"MOV", "MOV", nullptr, ".mov"},
        {"AVI", "AVI", nullptr, ".avi"},
        {"MP4", "MP4", nullptr, ".mp4"},
    };
    return choices;
}

const Choices &videoNamingChoices()
{
    static const Choices choices(namingChoices().begin() + NameByTime,
                                 namingChoices().begin() + NameAsFolder + 1);
    return choices;
}

const Choices &placementChoices()
{
    static const Choices choices{
        {QT_TRANSLATE_NOOP("MainWindow", "Free"), "自由"},
        {QT_TRANSLATE_NOOP("MainWindow", "Upper left"), "左上"},
        {QT_TRANSLATE_NOOP("MainWindow", "Upper right"), "右上"},
        {QT_TRANSLATE_NOOP("MainWindow", "Middle"), "中间"},
        {QT_TRANSLATE_NOOP("MainWindow", "Bottom left"), "左下"},
        {QT_TRANSLATE_NOOP("MainWindow", "Bottom right"), "右下"},
    };
    return choices;
}

const Choice &choiceOf(const Choices &choices, int value)
{
    const bool isListed = value >= 0 && value < static_cast<int>(choices.size());
    return choices[isListed ? static_cast<size_t>(value) : 0];
}
