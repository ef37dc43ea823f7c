// zel/content/conversion.cpp: raw arrays to element strings; six-digit reals without the generic
// formatter.
#include "zel/content/conversion.h"

#include "runtime/quad.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Powers of ten as long doubles, correctly rounded, 10^-350 .. 10^350.
constexpr int powerRange = 350;
const long double* powersOfTen()
{
    static const auto* table = [] {
        static long double values[2 * powerRange + 1];
        char text[16];
        for (int i = -powerRange; i <= powerRange; ++i) {
            std::snprintf(text, sizeof text, "1e%d", i);
            values[i + powerRange] = std::strtold(text, nullptr);
        }
        return values;
    }();
    return table;
}

long double tenTo(int n)
{
    return powersOfTen()[n + powerRange];
}

constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// |value| x 10^(5 - x), in double with one rounding where the power is exact, else through long
// double; good to about 2e-10 below 1e7 either way.
double scaledBy(double a, int x)
{
    const int m = 5 - x;
    if (m >= 0 && m <= 22) return a * exactPowers[m];
    if (m < 0 && m >= -22) return a / exactPowers[-m];
    return static_cast<double>(static_cast<long double>(a) * tenTo(m));
}

// The six significant digits of |value| (100000..999999) and its decimal exponent X, so that the
// rounded value is digits x 10^(X-5). False where the product can't tell: near a rounding tie (Qt
// rounds those away from zero) or a decade edge; the caller then asks Qt.
bool sixDigits(double value, std::int32_t& digits, int& exponent)
{
    const double a = std::fabs(value);
    std::uint64_t bits;
    std::memcpy(&bits, &a, sizeof bits);
    const int binary = static_cast<int>(bits >> 52) - 1022; // a = f x 2^binary, 0.5 <= f < 1
    if (binary == -1022) return false;                      // subnormal: Qt decides
    int x = ((binary - 1) * 78913) >> 18;                   // floor((binary - 1) x log10(2))
    if (5 - x > powerRange || 5 - x < -powerRange) return false;
    double scaled = scaledBy(a, x);
    if (scaled >= 1e6) scaled = scaledBy(a, ++x);
    if (scaled < 1e5) scaled = scaledBy(a, --x);
    constexpr double tolerance = 1e-7;
    if (scaled < 1e5 - tolerance || scaled >= 1e6 + tolerance) return false;
    if (std::fabs(scaled - 1e5) < tolerance || std::fabs(scaled - 1e6) < tolerance) return false;
    const double whole = std::floor(scaled);
    const double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) < tolerance) return false;
    digits = static_cast<std::int32_t>(whole) + (fraction > 0.5 ? 1 : 0);
    if (digits == 1000000) {
        digits = 100000;
        ++x;
    }
    exponent = x;
    return true;
}

// The 'g' form of Qt's C locale: exponent form below 1e-4 and from 1e6 on, trailing zeros dropped,
// an exponent of two digits at least.
int formatSixDigits(bool negative, std::int32_t digits, int exponent, char* out)
{
    char d[6];
    for (int i = 5; i >= 0; --i, digits /= 10)
        d[i] = static_cast<char>('0' + digits % 10);
    int used = 6;
    while (used > 1 && d[used - 1] == '0')
        --used;
    int n = 0;
    if (negative) out[n++] = '-';
    if (exponent < -4 || exponent >= 6) {
        out[n++] = d[0];
        if (used > 1) {
            out[n++] = '.';
            for (int i = 1; i < used; ++i)
                out[n++] = d[i];
        }
        out[n++] = 'e';
        out[n++] = exponent < 0 ? '-' : '+';
        const int e = std::abs(exponent);
        if (e >= 100) out[n++] = static_cast<char>('0' + e / 100);
        out[n++] = static_cast<char>('0' + e / 10 % 10);
        out[n++] = static_cast<char>('0' + e % 10);
    } else if (exponent >= 0) {
        for (int i = 0; i <= exponent; ++i)
            out[n++] = d[i];
        if (used > exponent + 1) {
            out[n++] = '.';
            for (int i = exponent + 1; i < used; ++i)
                out[n++] = d[i];
        }
    } else {
        out[n++] = '0';
        out[n++] = '.';
        for (int i = exponent + 1; i < 0; ++i)
            out[n++] = '0';
        for (int i = 0; i < used; ++i)
            out[n++] = d[i];
    }
    return n;
}

template <typename T> T load(const char* p)
{
    T value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

QString complexText(const QString& real, const QString& imaginary)
{
    return QLatin1Char('(') + real + QLatin1String(", ") + imaginary + QLatin1Char(')');
}

int characterLength(const QString& dataType)
{
    return dataType.mid(10).toInt();
}

} // namespace

QString ZEL_DataConverter::realText(double value)
{
    std::int32_t digits = 0;
    int exponent = 0;
    if (value == 0.0 || !std::isfinite(value) || !sixDigits(value, digits, exponent))
        return QString::number(value, 'g', 6);
    char text[16];
    return QString::fromLatin1(text, formatSixDigits(value < 0.0, digits, exponent, text));
}

double ZEL_DataConverter::sixDigitValue(double value)
{
    std::int32_t digits = 0;
    int exponent = 0;
    if (value == 0.0 || !std::isfinite(value) || !sixDigits(value, digits, exponent))
        return realText(value).toDouble();
    const int scale = exponent - 5;
    if (scale < -22 || scale > 22) return realText(value).toDouble();
    // One correctly rounded operation on exact operands: the nearest double, as reading the text.
    const double magnitude = scale >= 0 ? digits * exactPowers[scale] : digits / exactPowers[-scale];
    return value < 0.0 ? -magnitude : magnitude;
}

QString ZEL_DataConverter::quadText(const void* quad)
{
    kestro::rt::Quad q;
    std::memcpy(&q, quad, sizeof q);
    const QLatin1String sign(q.hi < 0.0 ? "-" : "");
    if (!std::isfinite(q.hi)) return sign + QLatin1String(std::isnan(q.hi) ? "nan" : "inf");
    char digits[33];
    const int exponent = _tarnix_ioquad2ascii(quad, digits, 0, 32);
    digits[32] = '\0';
    return sign + QLatin1Char(digits[0]) + QLatin1Char('.') + QLatin1String(digits + 1, 31) +
           QLatin1Char('Q') + QString::number(exponent - 1);
}

int ZEL_DataConverter::elementSize(const QString& dataType)
{
    static const struct
    {
        const char* name;
        int size;
    } fixed[] = {{"REAL*4", 4},    {"REAL*8", 8},    {"REAL*16", 16},   {"INTEGER*8", 8},
                 {"INTEGER*4", 4}, {"COMPLEX*4", 8}, {"COMPLEX*8", 16}, {"COMPLEX*16", 32}};
    for (const auto& f : fixed)
        if (dataType == QLatin1String(f.name)) return f.size;
    if (!dataType.startsWith(QLatin1String("CHARACTER"))) return -1;
    const int n = characterLength(dataType);
    return n < 0 ? -1 : n;
}

QStringList ZEL_DataConverter::convertDataToStringList(const void* data, const QString& dataType, int rows,
                                                       int columns)
{
    QStringList list;
    const int size = elementSize(dataType);
    if (data == nullptr || rows < 1 || columns < 1 || size < 0) return list;
    const qint64 count = qint64(rows) * columns;
    if (count > maxElements) return list;
    list.reserve(static_cast<int>(count));
    const char* p = static_cast<const char*>(data);
    const auto each = [&](auto&& text) {
        for (qint64 i = 0; i < count; ++i, p += size)
            list.append(text(p));
    };
    if (dataType == QLatin1String("REAL*4")) {
        each([](const char* e) { return realText(load<float>(e)); });
    } else if (dataType == QLatin1String("REAL*8")) {
        each([](const char* e) { return realText(load<double>(e)); });
    } else if (dataType == QLatin1String("REAL*16")) {
        each([](const char* e) { return quadText(e); });
    } else if (dataType == QLatin1String("INTEGER*8")) {
        each([](const char* e) { return QString::number(load<qint64>(e), 10); });
    } else if (dataType == QLatin1String("INTEGER*4")) {
        each([](const char* e) { return QString::number(load<qint32>(e), 10); });
    } else if (dataType == QLatin1String("COMPLEX*4")) {
        each([](const char* e) {
            return complexText(realText(load<float>(e)), realText(load<float>(e + 4)));
        });
    } else if (dataType == QLatin1String("COMPLEX*8")) {
        each([](const char* e) {
            return complexText(realText(load<double>(e)), realText(load<double>(e + 8)));
        });
    } else if (dataType == QLatin1String("COMPLEX*16")) {
        each([](const char* e) { return complexText(quadText(e), quadText(e + 16)); });
    } else {
        each([size](const char* e) { return QString::fromLatin1(e, size); });
    }
    return list;
}
