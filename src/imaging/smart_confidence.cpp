#include "imaging/smart_score.h"

#include <cmath>

// A network of one hidden layer and direct connections, trained on generated scenes (sheets of many
// kinds on many desks, with shadows, glare, hands, folds, noise) and photographs: to rank the
// candidates of one picture by their overlap with the true sheet, and to answer about that overlap.
namespace {

constexpr size_t kHidden = 14;
constexpr float kInner[kHidden][kSheetTraits + 1] = {
    {0.147F, 0.212F, -0.430F, 0.540F, 0.392F, 0.808F, 0.030F, -0.581F, -0.351F, -0.553F, 0.094F,
     0.367F, 0.408F, -0.584F, -0.461F, -1.516F, 0.352F, -0.136F, 1.602F},
    {-0.036F, -0.759F, -0.910F, -0.824F, 0.560F, -0.277F, -0.038F, -0.901F, 0.269F, 1.291F, 1.707F,
     -0.016F, 0.915F, 0.742F, 2.834F, 0.752F, 0.054F, 0.548F, 0.820F},
    {0.114F, 0.240F, -0.058F, 0.078F, 0.107F, 0.185F, 0.107F, 0.178F, 0.554F, 0.392F, 0.466F,
     -0.039F, 0.015F, 0.137F, 0.048F, 0.370F, 0.054F, 0.128F, 0.473F},
    {0.048F, 0.031F, -0.454F, 0.541F, 0.911F, 0.196F, -0.675F, -0.133F, -0.328F, -1.647F, -0.877F,
     -1.556F, -0.085F, 0.934F, 2.348F, -0.468F, -0.303F, -0.003F, 0.157F},
    {0.675F, 0.329F, 0.703F, -0.307F, 0.247F, -0.180F, 0.286F, -0.111F, 0.161F, -0.185F, 0.018F,
     0.391F, -0.601F, -1.052F, -0.662F, 0.737F, -1.260F, 0.632F, -1.075F},
    {0.401F, 0.204F, 0.395F, -0.020F, 0.295F, 0.416F, -0.587F, -0.666F, 0.619F, -0.022F, 0.214F,
     -0.540F, -0.406F, -0.648F, -1.774F, 0.874F, -0.200F, 1.398F, -2.107F},
    {0.225F, -0.949F, 0.780F, 0.898F, 0.875F, 0.459F, 0.398F, 0.491F, -0.399F, 0.198F, -1.241F,
     -0.364F, 0.090F, -0.256F, 1.354F, 0.646F, 0.346F, -0.941F, -1.201F},
    {0.001F, -0.002F, 0.004F, -0.000F, 0.002F, 0.000F, 0.003F, -0.004F, -0.004F, -0.006F, 0.001F,
     -0.000F, 0.000F, 0.001F, 0.000F, 0.003F, 0.004F, -0.000F, -0.000F},
    {0.803F, 0.696F, 0.400F, 0.237F, 0.388F, -0.795F, 1.134F, -0.249F, 0.034F, 2.888F, 1.450F,
     -0.531F, -0.333F, -0.764F, -0.416F, -2.779F, 0.065F, -0.225F, 0.078F},
    {-0.179F, 0.029F, -0.653F, -0.151F, -0.451F, 0.363F, -0.650F, 0.111F, 0.060F, -0.613F, 0.345F,
     0.355F, 0.350F, 0.986F, -0.345F, -0.141F, -0.486F, -0.122F, 0.818F},
    {-0.146F, -0.185F, 1.693F, 1.376F, -0.509F, 0.341F, -1.097F, -0.756F, 0.646F, 0.152F, -1.305F,
     -0.201F, -0.370F, -1.230F, -1.875F, -2.369F, -0.199F, 1.349F, -1.187F},
    {-0.554F, 0.038F, -0.682F, 0.391F, 0.124F, 0.188F, -0.438F, 0.410F, -0.043F, -0.804F, -0.430F,
     -0.721F, -0.548F, 1.469F, 1.534F, -0.990F, 0.112F, 0.124F, 1.274F},
    {0.162F, 0.175F, 0.042F, 0.072F, 0.123F, 0.099F, 0.162F, 0.304F, 0.819F, 0.252F, 0.219F,
     -0.071F, 0.055F, -0.158F, -0.049F, 0.005F, 0.131F, 0.199F, 0.336F},
    {0.108F, -0.578F, 0.586F, -0.614F, 0.041F, 0.157F, 1.531F, -0.019F, -0.219F, 1.051F, -1.077F,
     0.358F, -0.213F, -0.650F, -0.535F, -0.557F, 1.874F, 0.267F, -0.561F},
};
constexpr float kOuter[kHidden] = {-1.413F, -1.597F, -1.216F, -1.699F, 1.254F,  1.714F,  1.629F,
                                   0.000F,  2.158F,  -0.562F, 2.530F,  -1.461F, -1.038F, 1.079F};
constexpr float kDirect[kSheetTraits] = {0.375F,  -0.015F, 0.812F, 0.054F,  0.047F,  -0.456F,
                                         0.341F,  0.176F,  0.675F, -0.034F, 0.181F,  -0.434F,
                                         -0.003F, -0.464F, 0.191F, 1.336F,  -0.090F, 0.035F};
constexpr float kBias = -1.428F;
} // namespace

float sheetConfidence(const SheetTraits &traits)
{
    float sum = kBias;
    for (size_t j = 0; j < kHidden; ++j) {
        float inner = kInner[j][kSheetTraits];
        for (size_t i = 0; i < kSheetTraits; ++i)
            inner += kInner[j][i] * traits[i];
        sum += kOuter[j] * std::tanh(inner);
    }
    for (size_t i = 0; i < kSheetTraits; ++i)
        sum += kDirect[i] * traits[i];
    return 1 / (1 + std::exp(-sum));
}
