#include "ChoiceReport.h"

#include <QRegularExpression>

namespace ChoiceReport {

namespace {

QString Describe(const EpsgTransformation& t) {
    return QStringLiteral("EPSG:%1 \"%2\" (%3, %4)")
        .arg(t.code)
        .arg(t.name,
             t.accuracy > 0 ? QStringLiteral("%1 m").arg(t.accuracy)
                            : QStringLiteral("accuracy "
                                             "unknown"),
             t.area);
}

double AccuracyRank(const EpsgTransformation& t) {
    return t.accuracy > 0 ? t.accuracy : 1e12;
}

int Variant(const QString& name, QString* family) {
    static const QRegularExpression variant(QStringLiteral("^(.*\\S)\\s*\\((\\d+)\\)$"));
    const auto m = variant.match(name);
    *family = m.hasMatch() ? m.captured(1) : name;
    return m.hasMatch() ? m.captured(2).toInt() : 0;
}

bool Newer(const EpsgTransformation& a, const EpsgTransformation& b) {
    QString fa, fb;
    const int va = Variant(a.name, &fa);
    const int vb = Variant(b.name, &fb);
    if (va > 0 && vb > 0 && fa == fb && va != vb)
        return va > vb;
    return a.code > b.code;
}

} // namespace

QString Label(Verdict verdict) {
    switch (verdict) {
    case Verdict::Same:
        return QStringLiteral("the same as PROJ");
    case Verdict::NotHelmert:
        return QStringLiteral("PROJ uses another method, a chain or a ballpark");
    case Verdict::NotStorable:
        return QStringLiteral("PROJ's does not join WGS 84 and the datum");
    case Verdict::PartOfTheArea:
        return QStringLiteral("PROJ's covers only part of the area");
    case Verdict::Superseded:
        return QStringLiteral("PROJ's is superseded");
    case Verdict::MoreAccurate:
        return QStringLiteral("the stored one is more accurate");
    case Verdict::Newer:
        return QStringLiteral("the stored one is newer");
    case Verdict::LargerOverlap:
        return QStringLiteral("the stored one overlaps more of the area");
    case Verdict::Other:
        return QStringLiteral("PROJ ranks otherwise");
    }
    return QString();
}

Comparison Compare(const EpsgTransformations& epsg, const StoredSystemRef& system,
                   const ProjChoice& proj) {
    if (proj.found && proj.helmertCode == system.operationCode && proj.otherKind.isEmpty())
        return {};
    if (!proj.found)
        return {Verdict::NotHelmert, QStringLiteral("PROJ offers no operation")};
    if (!proj.otherKind.isEmpty())
        return {Verdict::NotHelmert, QStringLiteral("PROJ would use \"%1\", %2, which the system "
                                                    "database does not hold")
                                         .arg(proj.name, proj.otherKind)};
    const EpsgTransformation* theirs = epsg.ByCode(proj.helmertCode);
    const EpsgTransformation* ours = epsg.ByCode(system.operationCode);
    if (!theirs || !ours)
        return {Verdict::NotStorable,
                QStringLiteral("PROJ would use \"%1\" (EPSG:%2); the system stores EPSG:%3")
                    .arg(proj.name)
                    .arg(proj.helmertCode)
                    .arg(system.operationCode)};
    const QString both =
        QStringLiteral("stored %1; PROJ's %2").arg(Describe(*ours), Describe(*theirs));
    if (!theirs->current())
        return {Verdict::Superseded,
                QStringLiteral("PROJ's is superseded by %1: %2").arg(theirs->replacedBy, both)};
    const AreaBox area{system.south, system.west, system.north, system.east};
    const bool ourCover = system.hasArea && ours->hasBox && BoxOf(*ours).Contains(area);
    const bool theirCover = system.hasArea && theirs->hasBox && BoxOf(*theirs).Contains(area);
    if (ourCover && !theirCover)
        return {Verdict::PartOfTheArea,
                QStringLiteral("the stored one covers all of the system's area, PROJ's only part "
                               "of it: %1")
                    .arg(both)};
    if (ourCover == theirCover && AccuracyRank(*ours) < AccuracyRank(*theirs))
        return {Verdict::MoreAccurate,
                QStringLiteral("the stored one is more accurate: %1").arg(both)};
    if (ourCover == theirCover && AccuracyRank(*ours) == AccuracyRank(*theirs) &&
        Newer(*ours, *theirs))
        return {Verdict::Newer, QStringLiteral("as accurate, and newer: %1").arg(both)};
    if (!ourCover && !theirCover && ours->hasBox && theirs->hasBox &&
        BoxOf(*ours).Overlap(area) > 1.01 * BoxOf(*theirs).Overlap(area))
        return {Verdict::LargerOverlap,
                QStringLiteral("neither covers the system's area, the stored one overlaps more "
                               "of it: %1")
                    .arg(both)};
    return {Verdict::Other, QStringLiteral("PROJ ranks otherwise: %1").arg(both)};
}

const EpsgTransformation* BetterWithSameArea(const EpsgTransformations& epsg, int storedCode) {
    const EpsgTransformation* stored = epsg.ByCode(storedCode);
    if (!stored || !stored->hasBox)
        return nullptr;
    const EpsgTransformation* best = nullptr;
    for (const EpsgTransformation* t : epsg.OfDatum(stored->localDatum)) {
        if (t == stored || !t->current() || !t->hasBox || t->accuracy <= 0 ||
            !BoxOf(*t).SameAs(BoxOf(*stored)))
            continue;
        if (AccuracyRank(*t) < AccuracyRank(*stored) &&
            (!best || AccuracyRank(*t) < AccuracyRank(*best)))
            best = t;
    }
    return best;
}

} // namespace ChoiceReport
