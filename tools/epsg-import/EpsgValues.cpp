#include "EpsgValues.h"

#include "api/GeoTypes.h"
#include "util/GeoFormat.h"

#include <QHash>
#include <QLocale>

#include <cmath>

namespace EpsgValues {

std::optional<double> SexagesimalToDegrees(double value, bool withSeconds) {
    if (!std::isfinite(value))
        return std::nullopt;
    // Work on the decimal digits: DDD.MMSSsss is a text packed into a number, and binary
    // arithmetic on it turns 30' into 29'59.9999".
    const QString text = QString::number(std::abs(value), 'f', 10);
    const qsizetype dot = text.indexOf(u'.');
    const QString fraction = text.mid(dot + 1);
    const double degrees = text.left(dot).toDouble();
    double minutes = 0;
    double seconds = 0;
    if (withSeconds) {
        minutes = fraction.left(2).toDouble();
        seconds = QString(fraction.mid(2, 2) + u'.' + fraction.mid(4)).toDouble();
    } else {
        minutes = QString(fraction.left(2) + u'.' + fraction.mid(2)).toDouble();
    }
    if (minutes >= 60 || seconds >= 60)
        return std::nullopt;
    const double result = degrees + minutes / 60.0 + seconds / 3600.0;
    return value < 0 ? -result : result;
}

QString FormatPlain(double value) {
    if (value == 0)
        value = 0; // no "-0.000000"
    // The shortest text that reads back as the same number ("5400088.438", not
    // "5400088.4380000001"), cut to ten decimals, padded to six.
    QString text = QString::number(value, 'f', QLocale::FloatingPointShortest);
    qsizetype dot = text.indexOf(u'.');
    if (dot < 0) {
        text += u'.';
        dot = text.size() - 1;
    }
    if (text.size() - dot - 1 > 10) {
        text = QString::number(value, 'f', 10);
        while (text.endsWith(u'0'))
            text.chop(1);
    }
    while (text.size() - dot - 1 < 6)
        text += u'0';
    return text;
}

QString ParamText(double value, unsigned type) {
    if (type != PRM_LATITUDE && type != PRM_LONGITUDE)
        return FormatPlain(value);
    QString text;
    if (FormatGeogs(value, 7, 7, type == PRM_LATITUDE ? 10 : 11, text, true, true))
        return text;
    return FormatPlain(value);
}

QString NotNull(const QString& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

QString JoinTexts(const QString& first, const QString& second) {
    if (first.isEmpty())
        return second;
    if (second.isEmpty())
        return first;
    return first + u'\n' + second;
}

QString GroupOfArea(const QString& areaName) {
    const QString head = areaName.section(QStringLiteral(" - "), 0, 0).trimmed();
    if (head.isEmpty() || head.startsWith(QLatin1String("World")))
        return QStringLiteral("World"); // also "World centred on 150°E" and the like
    static const QHash<QString, QString> aliases = {
        {QStringLiteral("DR Congo (Zaire)"), QStringLiteral("Congo DR (Zaire)")},
    };
    return aliases.value(head, head);
}

QString UnitSuffix(int epsgUnitCode) {
    static const QHash<int, QString> suffixes = {
        {9001, "m"},       {9002, "ft"},      {9003, "ftUS"},    {9005, "ftCla"},
        {9014, "fath"},    {9030, "NM"},      {9031, "mGLM"},    {9033, "chUS"},
        {9034, "lkUS"},    {9035, "miUS"},    {9036, "km"},      {9037, "ydCla"},
        {9038, "chCla"},   {9039, "lkCla"},   {9040, "ydSe"},    {9041, "ftSe"},
        {9042, "chSe"},    {9043, "lkSe"},    {9050, "ydBnA"},   {9051, "ftBnA"},
        {9052, "chBnA"},   {9053, "lkBnA"},   {9060, "ydBnB"},   {9061, "ftBnB"},
        {9062, "chBnB"},   {9063, "lkBnB"},   {9070, "ft1865"},  {9080, "ftInd"},
        {9081, "ftInd37"}, {9082, "ftInd62"}, {9083, "ftInd75"}, {9084, "ydInd"},
        {9085, "ydInd37"}, {9086, "ydInd62"}, {9087, "ydInd75"}, {9093, "mi"},
        {9094, "ftGC"},    {9095, "ft1936"},  {9096, "yd"},      {9097, "ch"},
        {9098, "lk"},      {9099, "ydSeT"},   {9300, "ftSeT"},   {9301, "chSeT"},
        {9302, "lkSeT"},   {1025, "mm"},      {1033, "cm"},
    };
    return suffixes.value(epsgUnitCode);
}

} // namespace EpsgValues
