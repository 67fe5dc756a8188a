#include "stand/codes.h"

#include <algorithm>
#include <iterator>

namespace {

// Made once with a QR encoder, error correction M; drawing it needs no encoder here.
const char *const kQrModules[] = {
    "#######.###.####..###.#######", "#.....#.#.#..#..###.#.#.....#",
    "#.###.#.....#...#.###.#.###.#", "#.###.#.#...#.##.###..#.###.#",
    "#.###.#...###.#.#..#..#.###.#", "#.....#....#.#.#####..#.....#",
    "#######.#.#.#.#.#.#.#.#######", "........##.#...####.#........",
    "#.##.###.#####.######.#..#.##", ".##..#.#####.###...######...#",
    "##..#####...##..#.....##..##.", "#...#...#..#...#..#####.#...#",
    "#.###.###...#.####.#.....##..", "..#.#...#..#..##...#.##...###",
    "..##..#..###.#.....######.###", "##...#.#.###..##..#..##.#..#.",
    "####..##..#...#.#.#.##.###.#.", ".###.#.##..#..###...#..#.###.",
    "#.#####.....####..........#..", "..##.#..###..##.###.##.#..#..",
    ".##...#.#..#.##..##.#######..", "........##.#......###...#####",
    "#######.##..#.#..####.#.##.#.", "#.....#.#.#..##.#.#.#...##...",
    "#.###.#..#.##..###..#####.##.", "#.###.#.#####..#.####...##..#",
    "#.###.#.#.#..##...#....#..#.#", "#.....#..######.#.#.#.####.#.",
    "#######.#..#####...##.##...#.",
};

// Left-hand digits with odd parity; the other sets follow by mirroring and inverting.
const char *const kEanDigits[] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                  "0110001", "0101111", "0111011", "0110111", "0001011"};
// Parity of the six left-hand digits, chosen by the first digit of all: 1 is even.
const char *const kEanParity[] = {"000000", "001011", "001101", "001110", "010011",
                                  "011001", "011100", "010101", "010110", "011010"};

// Widths of bars and spaces of the values 0 to 105 and the stop mark.
const char *const kCode128Widths[] = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312", "132212",
    "221213", "221312", "231212", "112232", "122132", "122231", "113222", "123122", "123221",
    "223211", "221132", "221231", "213212", "223112", "312131", "311222", "321122", "321221",
    "312212", "322112", "322211", "212123", "212321", "232121", "111323", "131123", "131321",
    "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331", "132131",
    "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311", "213131",
    "311123", "311321", "331121", "312113", "312311", "332111", "314111", "221411", "431111",
    "111224", "111422", "121124", "121421", "141122", "141221", "112214", "112412", "122114",
    "122411", "142112", "142211", "241211", "221114", "413111", "241112", "134111", "111242",
    "121142", "121241", "114212", "124112", "124211", "411212", "421112", "421211", "212141",
    "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113", "411311",
    "113141", "114131", "311141", "411131", "211412", "211214", "211232", "2331112"};
constexpr int kCode128StartB = 104;
constexpr int kCode128Stop = 106;

QByteArray inverted(QByteArray modules)
{
    for (char &module : modules)
        module = module == '0' ? '1' : '0';
    return modules;
}

QByteArray fromWidths(const char *widths)
{
    QByteArray modules;
    for (int i = 0; widths[i]; ++i)
        modules.append(widths[i] - '0', i % 2 ? '0' : '1');
    return modules;
}

} // namespace

QString qrText()
{
    return QStringLiteral("https://archive.example/sheet/0417");
}

QStringList qrModules()
{
    QStringList rows;
    for (const char *row : kQrModules)
        rows << QLatin1String(row);
    return rows;
}

QString eanWithCheckDigit(const QString &twelveDigits)
{
    int sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += twelveDigits.at(i).digitValue() * (i % 2 ? 3 : 1);
    return twelveDigits + QString::number((10 - sum % 10) % 10);
}

QByteArray eanModules(const QString &digits)
{
    QByteArray modules = "101";
    const char *parity = kEanParity[digits.at(0).digitValue()];
    for (int i = 1; i <= 12; ++i) {
        const QByteArray odd = kEanDigits[digits.at(i).digitValue()];
        const QByteArray right = inverted(odd);
        if (i == 7)
            modules += "01010";
        if (i > 6)
            modules += right;
        else if (parity[i - 1] == '0')
            modules += odd;
        else
            std::reverse_copy(right.begin(), right.end(), std::back_inserter(modules));
    }
    return modules + "101";
}

QByteArray code128Modules(const QByteArray &text)
{
    QByteArray modules = fromWidths(kCode128Widths[kCode128StartB]);
    int sum = kCode128StartB;
    for (int i = 0; i < text.size(); ++i) {
        const int value = text.at(i) - ' ';
        sum += (i + 1) * value;
        modules += fromWidths(kCode128Widths[value]);
    }
    return modules + fromWidths(kCode128Widths[sum % 103]) +
           fromWidths(kCode128Widths[kCode128Stop]);
}
