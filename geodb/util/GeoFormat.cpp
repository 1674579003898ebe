#include "util/GeoFormat.h"

#include <QLocale>

#include <cmath>
#include <cstdint>

namespace {

constexpr int KindLatitude = 10;
constexpr int KindLongitude = 11;

constexpr char16_t Degree = u'\u00b0';

// Longest text StringToGeo looks at; no angle text comes anywhere near it.
constexpr qsizetype MaxTextLength = 128;

qint64 powerOfTen(int n) {
    qint64 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

QString padded(qint64 number, int width, bool fixedWidth) {
    return QString::number(number).rightJustified(fixedWidth ? width : 0, u'0');
}

// The last component: whole part padded, then the decimals.
QString lastComponent(qint64 units, qint64 scale, int decimals, int width, bool fixedWidth) {
    QString text = padded(units / scale, width, fixedWidth);
    if (decimals > 0)
        text += u'.' + QString::number(units % scale).rightJustified(decimals, u'0');
    return text;
}

} // namespace

bool FormatGeogs(double value, unsigned format, int decimals, int kind, QString& out,
                 bool fixedWidth, bool hemisphereLetter) {
    if (!std::isfinite(value) || decimals < 0 || decimals > 9)
        return false;
    if (format != 0 && format != 1 && format != 7)
        return false;
    int degreeWidth = 2;
    QChar positive = u'N', negative = u'S';
    if (kind == KindLatitude) {
        if (std::fabs(value) > 90.0)
            return false;
    } else if (kind == KindLongitude) {
        if (std::fabs(value) > 360.0)
            return false;
        if (value > 180.0)
            value -= 360.0;
        else if (value < -180.0)
            value += 360.0;
        degreeWidth = 3;
        positive = u'E';
        negative = u'W';
    } else {
        return false;
    }

    // Round once, in units of the last shown digit, and derive every component from that
    // integer: 59.99999999" then carries into the minutes instead of showing as 60".
    const qint64 scale = powerOfTen(decimals);
    const qint64 perDegree = (format == 0 ? 1 : format == 1 ? 60 : 3600) * scale;
    const long double scaled = std::fabs(static_cast<long double>(value)) * perDegree;
    const qint64 units = std::llround(scaled);
    const bool isNegative = value < 0.0 && units != 0; // no "-0" or "0S"

    QString text;
    if (isNegative && !hemisphereLetter)
        text += u'-';
    if (format == 0) {
        text += lastComponent(units, scale, decimals, degreeWidth, fixedWidth) + Degree;
    } else if (format == 1) {
        const qint64 perMinute = scale;
        text += padded(units / (60 * perMinute), degreeWidth, fixedWidth) + Degree;
        text += lastComponent(units % (60 * perMinute), perMinute, decimals, 2, fixedWidth) + u'\'';
    } else {
        const qint64 perSecond = scale;
        const qint64 perMinute = 60 * perSecond;
        text += padded(units / (60 * perMinute), degreeWidth, fixedWidth) + Degree;
        text += padded((units % (60 * perMinute)) / perMinute, 2, fixedWidth) + u'\'';
        text += lastComponent(units % perMinute, perSecond, decimals, 2, fixedWidth) + u'"';
    }
    if (hemisphereLetter)
        text += isNegative ? negative : positive;
    out = text;
    return true;
}

namespace {

// One number of an angle text: digits, at most one decimal separator ('.' or ','), and the
// placeholder '_' of a masked edit standing for a digit the user left out.
struct Number {
    double value = 0.0;
    bool hasDecimals = false;
};

bool isDigitChar(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Placeholders may stand only at the ends of a run of digits ("_5", "5_", "12.5__");
// between two digits ("5_3") nobody can tell what was meant.
bool digitsFromRun(const QString& run, QString& digits) {
    bool seenDigit = false, gapAfterDigit = false;
    for (QChar c : run) {
        if (isDigitChar(c)) {
            if (gapAfterDigit)
                return false;
            seenDigit = true;
            digits += c;
        } else if (seenDigit) {
            gapAfterDigit = true;
        }
    }
    return true;
}

bool parseNumber(const QString& token, Number& number) {
    QString whole, fraction;
    const qsizetype point = [&] {
        for (qsizetype i = 0; i < token.size(); ++i)
            if (token[i] == u'.' || token[i] == u',')
                return i;
        return qsizetype(-1);
    }();
    const QString wholeRun = point < 0 ? token : token.left(point);
    const QString fractionRun = point < 0 ? QString() : token.mid(point + 1);
    if (fractionRun.contains(u'.') || fractionRun.contains(u','))
        return false;
    if (!digitsFromRun(wholeRun, whole) || !digitsFromRun(fractionRun, fraction))
        return false;
    if (whole.isEmpty() && fraction.isEmpty())
        return false; // nothing but placeholders or a lone separator
    bool ok = false;
    const QString plain = (whole.isEmpty() ? QStringLiteral("0") : whole) + u'.' +
                          (fraction.isEmpty() ? QStringLiteral("0") : fraction);
    number.value = QLocale::c().toDouble(plain, &ok);
    number.hasDecimals = !fraction.isEmpty() || point >= 0;
    return ok && std::isfinite(number.value);
}

enum class Mark { None, Space, Colon, Degree, Minute, Second };

Mark markAt(const QString& s, qsizetype& pos) {
    const QChar c = s[pos];
    if (c == Degree || c == u'\u00ba') {
        ++pos;
        return Mark::Degree;
    }
    if (c == u'\'' || c == u'\u2032' || c == u'\u2019') {
        // Two apostrophes are often typed for the seconds sign.
        if (pos + 1 < s.size() && s[pos + 1] == u'\'') {
            pos += 2;
            return Mark::Second;
        }
        ++pos;
        return Mark::Minute;
    }
    if (c == u'"' || c == u'\u2033' || c == u'\u201d') {
        ++pos;
        return Mark::Second;
    }
    if (c == u':') {
        ++pos;
        return Mark::Colon;
    }
    return Mark::None;
}

} // namespace

bool StringToGeo(const QString& text, double& out) {
    if (text.size() > MaxTextLength)
        return false;
    QString s = text.trimmed();
    if (s.isEmpty())
        return false;

    int sign = 0;
    if (s[0] == u'-' || s[0] == u'+' || s[0] == u'\u2212') {
        sign = s[0] == u'+' ? 1 : -1;
        s = s.mid(1).trimmed();
    }
    QChar letter;
    if (!s.isEmpty()) {
        const QChar last = s.back().toUpper();
        if (last == u'N' || last == u'S' || last == u'E' || last == u'W') {
            letter = last;
            s.chop(1);
            s = s.trimmed();
        }
    }
    if (s.isEmpty() || (sign != 0 && !letter.isNull()))
        return false;

    // Up to three numbers (degrees, minutes, seconds), each followed by its sign, a colon or
    // blanks. A mark must fit its place; only the last number may have decimals.
    double parts[3] = {0.0, 0.0, 0.0};
    int count = 0;
    qsizetype pos = 0;
    bool lastHadDecimals = false;
    while (pos < s.size()) {
        if (count == 3)
            return false;
        if (lastHadDecimals)
            return false;
        qsizetype end = pos;
        while (end < s.size() &&
               (isDigitChar(s[end]) || s[end] == u'_' || s[end] == u'.' || s[end] == u','))
            ++end;
        if (end == pos)
            return false;
        Number number;
        if (!parseNumber(s.mid(pos, end - pos), number))
            return false;
        parts[count] = number.value;
        lastHadDecimals = number.hasDecimals;
        pos = end;

        // Blanks may stand before and after a mark ("52 ° 30 '").
        const qsizetype blanksFrom = pos;
        while (pos < s.size() && s[pos].isSpace())
            ++pos;
        Mark mark = Mark::None;
        if (pos < s.size())
            mark = markAt(s, pos);
        if (mark == Mark::None && pos > blanksFrom)
            mark = Mark::Space;
        while (pos < s.size() && s[pos].isSpace())
            ++pos;
        if (mark == Mark::None && pos < s.size())
            return false; // a character that belongs to no angle text
        if ((mark == Mark::Degree && count != 0) || (mark == Mark::Minute && count != 1) ||
            (mark == Mark::Second && count != 2))
            return false;
        if (mark == Mark::Colon && (count == 2 || pos >= s.size()))
            return false;
        ++count;
    }
    if (count == 0)
        return false;
    if ((count > 1 && parts[1] >= 60.0) || (count > 2 && parts[2] >= 60.0))
        return false;

    double value = parts[0] + parts[1] / 60.0 + parts[2] / 3600.0;
    const double limit = letter == u'N' || letter == u'S'   ? 90.0
                         : letter == u'E' || letter == u'W' ? 180.0
                                                            : 360.0;
    if (!std::isfinite(value) || value > limit)
        return false;
    if (sign < 0 || letter == u'S' || letter == u'W')
        value = -value;
    out = value == 0.0 ? 0.0 : value; // never hand back -0
    return true;
}
