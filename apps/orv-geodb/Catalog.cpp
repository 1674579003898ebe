#include "Catalog.h"

#include "api/ProjectionMethods.h"
#include "store/GeoStore.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace Catalog {

namespace {

// Columns wider than this are not padded further (long names and areas).
constexpr qsizetype MaxPadding = 60;

struct KindInfo {
    Kind kind;
    const char* title;
    const char* sql; // name, group, EPSG code, then the detail columns
};

const KindInfo Kinds[] = {
    {Kind::System, "Coordinate systems",
     "SELECT c.name, g.name, c.epsg_code, c.area FROM coordsys c "
     "JOIN sysgroup g ON g.id = c.group_id"},
    {Kind::Ellipsoid, "Ellipsoids",
     "SELECT name, '', epsg_code, semi_major, inv_flattening FROM ellipsoid"},
    {Kind::DatumTransformation, "Datum transformations",
     "SELECT name, '', epsg_code, extra_text FROM dtf"},
    {Kind::Projection, "Projections", "SELECT name, '', epsg_code, method_id FROM projection"},
    {Kind::Unit, "Units", "SELECT name, '', epsg_code, suffix, meters_per_unit FROM unit"},
};

const KindInfo& Info(Kind kind) {
    return *std::find_if(std::begin(Kinds), std::end(Kinds),
                         [kind](const KindInfo& info) { return info.kind == kind; });
}

QString Detail(Kind kind, const QSqlQuery& q) {
    switch (kind) {
    case Kind::Ellipsoid:
        return q.value(4).toDouble() > 0 ? QStringLiteral("a = %1 m, 1/f = %2")
                                               .arg(QString::number(q.value(3).toDouble(), 'f', 3),
                                                    QString::number(q.value(4).toDouble(), 'g', 12))
                                         : QStringLiteral("sphere, R = %1 m")
                                               .arg(QString::number(q.value(3).toDouble(), 'f', 3));
    case Kind::Projection: {
        const auto* method = ProjectionMethods::ById(q.value(3).toInt());
        return method ? QString::fromUtf8(method->name) : QString();
    }
    case Kind::Unit:
        return QStringLiteral("%1, %2 m")
            .arg(q.value(3).toString(), QString::number(q.value(4).toDouble(), 'g', 15));
    default:
        return q.value(3).toString();
    }
}

bool Read(QSqlDatabase db, Kind kind, bool user, QList<Entry>& entries, QString& error) {
    QSqlQuery q(db);
    if (!q.exec(QString::fromLatin1(Info(kind).sql))) {
        error = QStringLiteral("The database \"%1\" cannot be read: %2")
                    .arg(db.databaseName(), q.lastError().text());
        return false;
    }
    while (q.next()) {
        Entry entry;
        entry.name = q.value(0).toString();
        entry.group = q.value(1).toString();
        entry.epsgCode = q.value(2).toInt();
        entry.detail = Detail(kind, q);
        entry.user = user;
        entries << entry;
    }
    return true;
}

int EpsgCodeOf(const QString& text) {
    static const QRegularExpression code(QStringLiteral("^\\s*(?:EPSG\\s*:\\s*)?(\\d{1,9})\\s*$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = code.match(text);
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}

} // namespace

bool ParseKind(const QString& text, Kind& kind) {
    QString name = text.trimmed().toLower();
    if (name.endsWith(QLatin1Char('s')))
        name.chop(1);
    if (name == u"system" || name == u"coordsy")
        kind = Kind::System;
    else if (name == u"ellipsoid")
        kind = Kind::Ellipsoid;
    else if (name == u"dtf" || name == u"datum" || name == u"transformation")
        kind = Kind::DatumTransformation;
    else if (name == u"projection")
        kind = Kind::Projection;
    else if (name == u"unit")
        kind = Kind::Unit;
    else
        return false;
    return true;
}

QString KindTitle(Kind kind) {
    return QString::fromLatin1(Info(kind).title);
}

const QList<Kind>& AllKinds() {
    static const QList<Kind> kinds{Kind::System, Kind::Ellipsoid, Kind::DatumTransformation,
                                   Kind::Projection, Kind::Unit};
    return kinds;
}

bool Load(const GeoStore& store, Kind kind, QList<Entry>& entries, QString& error) {
    entries.clear();
    if (!Read(store.systemDb(), kind, false, entries, error) ||
        !Read(store.userDb(), kind, true, entries, error))
        return false;
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        const int group = a.group.compare(b.group, Qt::CaseInsensitive);
        return group != 0 ? group < 0 : a.name.compare(b.name, Qt::CaseInsensitive) < 0;
    });
    return true;
}

QString SearchKey(const QString& text) {
    QString key;
    key.reserve(text.size());
    for (const QChar c : text.toCaseFolded()) {
        if (c == u'\u00DF') // sharp s folds to "ss", as in the store's name comparison
            key += QStringLiteral("ss");
        else if (c.isLetterOrNumber())
            key += c;
    }
    return key;
}

QList<Entry> Find(const QList<Entry>& entries, const QString& text) {
    QList<Entry> found;
    const QString key = SearchKey(text);
    const int code = EpsgCodeOf(text);
    if (key.isEmpty())
        return found;
    for (const Entry& entry : entries) {
        if ((code > 0 && entry.epsgCode == code) || SearchKey(entry.name).contains(key))
            found << entry;
    }
    return found;
}

QString Table(Kind kind, const QList<Entry>& entries) {
    const bool groups = kind == Kind::System;
    QStringList heading{QStringLiteral("Name")};
    if (groups)
        heading << QStringLiteral("Group");
    heading << QStringLiteral("EPSG")
            << (kind == Kind::System || kind == Kind::DatumTransformation ? QStringLiteral("Area")
                : kind == Kind::Projection                                ? QStringLiteral("Method")
                                           : QStringLiteral("Values"));
    QList<QStringList> rows{heading};
    for (const Entry& entry : entries) {
        QStringList row{entry.user ? entry.name + QStringLiteral(" (user)") : entry.name};
        if (groups)
            row << entry.group;
        row << (entry.epsgCode > 0 ? QString::number(entry.epsgCode) : QStringLiteral("-"))
            << entry.detail;
        rows << row;
    }
    QList<qsizetype> widths(heading.size(), 0);
    for (const QStringList& row : rows) {
        for (qsizetype i = 0; i + 1 < row.size(); ++i)
            widths[i] = std::max(widths[i], std::min(row[i].size(), MaxPadding));
    }
    QString text;
    for (const QStringList& row : rows) {
        QString line = QStringLiteral("  ");
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += i + 1 < row.size() ? row[i].leftJustified(widths[i]) + QStringLiteral("  ")
                                       : row[i];
        }
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    }
    return text;
}

} // namespace Catalog
