#pragma once

#include <vector>

/// What the user chooses from, each list once: the boxes of the window, in both languages, the
/// settings, pictor-batch and the names of files all take their entries from here. Pure values, any
/// thread.

/// Values of `cutMode`, the index of the crop box.
enum CropMode { NoCrop = 0, AutomaticCrop = 1, ManualCrop = 2, MultiGraphCrop = 3, SmartCrop = 4 };

/// Values of `colorMode`, the index of the effect box.
enum ColorMode { ColorOriginal = 0, ColorGray = 1, ColorBinarization = 2, ColorOptimization = 3 };

/// Values of `fNameType`, the index of the naming box.
enum NameType {
    NameByNumber = 0,
    NameByTime = 1,
    NameCustom = 2,
    NameAsFolder = 3,
    NameByBarcode = 4
};

/// One entry; its place in the list is its value.
struct Choice
{
    const char *english = "";     ///< also the source text of other translations
    const char *chinese = "";     ///< UTF-8
    const char *option = nullptr; ///< for pictor-batch, which does not offer an entry without
    const char *ending = nullptr; ///< of files, with the dot
};

using Choices = std::vector<Choice>;

const Choices &cropChoices();        ///< CropMode
const Choices &effectChoices();      ///< ColorMode
const Choices &namingChoices();      ///< NameType
const Choices &pictureFormats();     ///< `fImgformat`
const Choices &videoFormats();       ///< of recordings; `fRecformat` is the ending without its dot
const Choices &videoNamingChoices(); ///< of recordings, values from 1 on
const Choices &placementChoices();   ///< of the assist picture, `camCombinePos`

/// The entry of `value`, the first one when there is none.
const Choice &choiceOf(const Choices &choices, int value);
