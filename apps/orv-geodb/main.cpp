// orv-geodb: a command-line view of the coordinate-system database.

#include "Catalog.h"
#include "SystemExport.h"

#include "api/OrvGeoFactories.h"
#include "store/GeoStore.h"
#include "store/ReadOnlySource.h"
#include "store/StoreSql.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <memory>

namespace {

constexpr int ExitOk = 0;
constexpr int ExitFailed = 1; // unknown name, data source cannot be opened
constexpr int ExitUsage = 2;  // bad arguments

const char* const Usage = R"(Usage: orv-geodb [--data <data-source>] <command>

Commands:
  groups [--scope user|system|all]   the groups of coordinate systems and their system counts
  systems <group>                    the coordinate systems of one group
  info system <group> <system>       the information text of a stored coordinate system
  info ellipsoid <name>              the defining values of an ellipsoid
  info dtf <name>                    a datum transformation
  info projection <name>             a projection and its parameters
  info unit <name>                   a unit
  stats                              what each database holds
  find <text>                        systems, ellipsoids, datum transformations, projections
                                     and units whose name contains the text (case, blanks
                                     and punctuation ignored) or whose EPSG code it is
  list <kind>                        every entry of a kind: systems, ellipsoids, dtfs,
                                     projections or units
  export <group> <system> --format wkt2|projjson|proj
                                     the system as WKT2 (2019), PROJJSON or the engine's
                                     PROJ pipeline, for GDAL, QGIS, PDAL, PostGIS and PROJ

Every command only reads: a user database that does not exist yet is not created.

Options:
  --data <data-source>   "" (default): the installed system database and the user database in
                         the user's data folder; "sqlite:<folder>" keeps the user database in
                         <folder>; "sqlite:<folder>;system=<file>" also names the system database
  --scope <scope>        user, system or all (default all)
  --format <format>      wkt2, projjson or proj (export)
  -h, --help             this text
  --version              the program's version
)";

QTextStream& Out() {
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& Err() {
    static QTextStream stream(stderr);
    return stream;
}

int Fail(int code, const QString& message) {
    Err() << "orv-geodb: " << message << Qt::endl;
    if (code == ExitUsage)
        Err() << "Run \"orv-geodb --help\" for the commands." << Qt::endl;
    return code;
}

// Information texts end their lines in CR LF for the dialogs; a terminal wants LF.
void PrintText(const QString& text) {
    QString plain = text;
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    Out() << plain;
    if (!plain.endsWith(QLatin1Char('\n')))
        Out() << '\n';
}

int ListGroups(OrvGeoDatabaseBase& db, const QString& scopeName) {
    int scope = GEODB_ALL;
    if (scopeName == QLatin1String("user"))
        scope = GEODB_USER;
    else if (scopeName == QLatin1String("system"))
        scope = GEODB_SYSTEM;
    else if (!scopeName.isEmpty() && scopeName != QLatin1String("all"))
        return Fail(
            ExitUsage,
            QStringLiteral("Unknown scope \"%1\": use user, system or all.").arg(scopeName));
    QStringList groups;
    db.GetGroupNames(groups, scope);
    if (!db.LastError().isEmpty())
        return Fail(ExitFailed, db.LastError());
    const QString where = scope == GEODB_USER     ? QStringLiteral("the user database")
                          : scope == GEODB_SYSTEM ? QStringLiteral("the system database")
                                                  : QStringLiteral("the system and user databases");
    if (groups.isEmpty()) {
        Out() << "No groups of coordinate systems in " << where << ".\n";
        return ExitOk;
    }
    QList<int> counts;
    qsizetype width = 0;
    int total = 0;
    for (const QString& group : groups) {
        QStringList systems;
        db.GetSystemNames(systems, group);
        if (!db.LastError().isEmpty())
            return Fail(ExitFailed, db.LastError());
        counts << int(systems.size());
        total += int(systems.size());
        width = std::max(width, group.size());
    }
    width = std::min<qsizetype>(width, 60);
    Out() << groups.size() << (groups.size() == 1 ? " group" : " groups") << " with " << total
          << (total == 1 ? " coordinate system" : " coordinate systems") << " in " << where
          << ":\n\n";
    for (int i = 0; i < groups.size(); ++i) {
        Out() << "  " << groups[i].leftJustified(width) << "  " << qSetFieldWidth(5) << counts[i]
              << qSetFieldWidth(0) << (counts[i] == 1 ? " system" : " systems") << '\n';
    }
    return ExitOk;
}

int ListSystems(OrvGeoDatabaseBase& db, const QString& group) {
    const bool exists = db.GroupNameExists(group);
    if (!db.LastError().isEmpty())
        return Fail(ExitFailed, db.LastError());
    if (!exists)
        return Fail(ExitFailed, QStringLiteral("There is no group \"%1\".").arg(group));
    QStringList systems;
    db.GetSystemNames(systems, group);
    if (!db.LastError().isEmpty())
        return Fail(ExitFailed, db.LastError());
    for (const QString& system : systems)
        Out() << system << '\n';
    return ExitOk;
}

int Info(OrvGeoDatabaseBase& db, const QStringList& args) {
    const QString kind = args.value(1);
    QString text;
    if (kind == QLatin1String("system")) {
        if (args.size() != 4)
            return Fail(ExitUsage, QStringLiteral("\"info system\" takes a group and a system."));
        db.GetSystemInfoText(text, args[2], args[3], {}, {}, {}, {}, {});
        if (!db.LastError().isEmpty())
            return Fail(ExitFailed, db.LastError());
        if (text.isEmpty())
            return Fail(ExitFailed, QStringLiteral("There is no coordinate system \"%1\" in the "
                                                   "group \"%2\".")
                                        .arg(args[3], args[2]));
        PrintText(text);
        return ExitOk;
    }
    const QStringList kinds{QStringLiteral("ellipsoid"), QStringLiteral("dtf"),
                            QStringLiteral("projection"), QStringLiteral("unit")};
    if (!kinds.contains(kind))
        return Fail(ExitUsage, QStringLiteral("\"info\" takes system, ellipsoid, dtf, projection "
                                              "or unit."));
    if (args.size() != 3)
        return Fail(ExitUsage, QStringLiteral("\"info %1\" takes one name.").arg(kind));
    const QString& name = args[2];
    QString what;
    if (kind == QLatin1String("ellipsoid")) {
        db.GetEllipsoidInfoText(text, name);
        what = QStringLiteral("ellipsoid");
    } else if (kind == QLatin1String("dtf")) {
        db.GetDtfInfoText(text, name);
        what = QStringLiteral("datum transformation");
    } else if (kind == QLatin1String("projection")) {
        text = db.GetProjectionInfoText(name);
        what = QStringLiteral("projection");
    } else {
        what = QStringLiteral("unit");
        QString suffix, description;
        double factor = 0;
        int category = 0;
        if (db.GetUnitDefinition(name, suffix, factor, category, description)) {
            QString stored;
            db.GetUnitDescription(stored, name);
            const QString unitName = stored.section(QLatin1Char('\t'), 0, 0);
            text = QStringLiteral("Unit: %1\r\n\tMetres per unit: %2\r\n\tSuffix: %3\r\n\t"
                                  "Category: %4\r\n\tDescription: %5\r\n")
                       .arg(unitName, QString::number(factor, 'g', 15), suffix,
                            QString::number(category), description);
        }
    }
    if (!db.LastError().isEmpty())
        return Fail(ExitFailed, db.LastError());
    if (text.isEmpty())
        return Fail(ExitFailed, QStringLiteral("There is no %1 \"%2\".").arg(what, name));
    PrintText(text);
    return ExitOk;
}

int Count(QSqlDatabase db, const QString& sql, QString* error) {
    const QStringList values = StoreSql::Column(db, sql, {}, error);
    return values.isEmpty() ? 0 : values.first().toInt();
}

int Stats(const GeoStore& store, const ReadOnlySource& source) {
    const QString userPath = source.userDatabaseExists() ? source.source().userDbPath
                                                         : source.source().userDbPath +
                                                               QStringLiteral(" (not created yet)");
    const struct {
        const char* label;
        QSqlDatabase db;
        QString path;
    } databases[] = {
        {"System database (pre-defined)", store.systemDb(), store.source().systemDbPath},
        {"User database", store.userDb(), userPath},
    };
    for (const auto& d : databases) {
        // All counts first: a database that cannot be read prints no numbers at all.
        QString error;
        auto count = [&](const char* sql) { return Count(d.db, QString::fromLatin1(sql), &error); };
        const int ellipsoids = count("SELECT count(*) FROM ellipsoid");
        const int dtfs = count("SELECT count(*) FROM dtf");
        const int projections = count("SELECT count(*) FROM projection");
        const int utm = count("SELECT count(*) FROM projection WHERE method_id = 1");
        const int units = count("SELECT count(*) FROM unit");
        const int groups = count("SELECT count(*) FROM sysgroup");
        const int systems = count("SELECT count(*) FROM coordsys");
        if (!error.isEmpty())
            return Fail(ExitFailed, error);
        Out() << d.label << ": " << d.path << '\n';
        auto line = [](const char* what, int n) {
            Out() << "  " << QString::fromLatin1(what).leftJustified(24) << qSetFieldWidth(6) << n
                  << qSetFieldWidth(0) << '\n';
        };
        line("Ellipsoids", ellipsoids);
        line("Datum transformations", dtfs);
        Out() << "  " << QStringLiteral("Projections").leftJustified(24) << qSetFieldWidth(6)
              << projections << qSetFieldWidth(0) << "  (" << utm << " UTM)\n";
        line("Units", units);
        line("Groups", groups);
        line("Coordinate systems", systems);
        Out() << '\n';
    }
    return ExitOk;
}

int Find(const GeoStore& store, const QString& text) {
    if (Catalog::SearchKey(text).isEmpty())
        return Fail(ExitUsage, QStringLiteral("\"find\" needs a name or an EPSG code."));
    int total = 0;
    for (const Catalog::Kind kind : Catalog::AllKinds()) {
        QList<Catalog::Entry> entries;
        QString error;
        if (!Catalog::Load(store, kind, entries, error))
            return Fail(ExitFailed, error);
        const QList<Catalog::Entry> found = Catalog::Find(entries, text);
        if (found.isEmpty())
            continue;
        Out() << (total > 0 ? "\n" : "") << Catalog::KindTitle(kind) << ": " << found.size() << '\n'
              << Catalog::Table(kind, found);
        total += int(found.size());
    }
    if (total == 0)
        return Fail(ExitFailed, QStringLiteral("Nothing is named like \"%1\" or has it as its "
                                               "EPSG code.")
                                    .arg(text));
    return ExitOk;
}

int List(const GeoStore& store, const QString& kindName) {
    Catalog::Kind kind;
    if (!Catalog::ParseKind(kindName, kind))
        return Fail(ExitUsage, QStringLiteral("Unknown kind \"%1\": use systems, ellipsoids, "
                                              "dtfs, projections or units.")
                                   .arg(kindName));
    QList<Catalog::Entry> entries;
    QString error;
    if (!Catalog::Load(store, kind, entries, error))
        return Fail(ExitFailed, error);
    Out() << Catalog::KindTitle(kind) << ": " << entries.size() << '\n'
          << Catalog::Table(kind, entries);
    return ExitOk;
}

int Export(const GeoStore& store, const ReadOnlySource& source, const QString& group,
           const QString& system, const QString& formatName) {
    SystemExport::Format format;
    if (!SystemExport::ParseFormat(formatName, format))
        return Fail(ExitUsage, formatName.isEmpty()
                                   ? QStringLiteral("\"export\" needs --format wkt2, projjson or "
                                                    "proj.")
                                   : QStringLiteral("Unknown format \"%1\": use wkt2, projjson or "
                                                    "proj.")
                                         .arg(formatName));
    QString text, error;
    if (!SystemExport::ExportStored(store, source.source().dataFolder, group, system, format, text,
                                    error))
        return Fail(ExitFailed, error);
    Out() << text;
    if (!text.endsWith(QLatin1Char('\n')))
        Out() << '\n';
    return ExitOk;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orv-geodb"));

    QCommandLineParser parser;
    const QCommandLineOption dataOption(QStringLiteral("data"), QString(),
                                        QStringLiteral("data-source"));
    const QCommandLineOption scopeOption(QStringLiteral("scope"), QString(),
                                         QStringLiteral("scope"));
    const QCommandLineOption formatOption(QStringLiteral("format"), QString(),
                                          QStringLiteral("format"));
    const QCommandLineOption helpOption({QStringLiteral("h"), QStringLiteral("help")}, QString());
    const QCommandLineOption versionOption(QStringLiteral("version"), QString());
    parser.addOptions({dataOption, scopeOption, formatOption, helpOption, versionOption});
    if (!parser.parse(QCoreApplication::arguments()))
        return Fail(ExitUsage, parser.errorText());
    const QStringList args = parser.positionalArguments();
    if (parser.isSet(helpOption)) {
        Out() << Usage;
        return ExitOk;
    }
    if (parser.isSet(versionOption)) {
        Out() << "orv-geodb " << ORV_VERSION << '\n';
        return ExitOk;
    }
    if (args.isEmpty())
        return Fail(ExitUsage, QStringLiteral("No command given."));

    const QString command = args.first();
    const QStringList commands{QStringLiteral("groups"), QStringLiteral("systems"),
                               QStringLiteral("info"),   QStringLiteral("stats"),
                               QStringLiteral("find"),   QStringLiteral("list"),
                               QStringLiteral("export")};
    if (!commands.contains(command))
        return Fail(ExitUsage, QStringLiteral("Unknown command \"%1\".").arg(command));
    if (parser.isSet(scopeOption) && command != QLatin1String("groups"))
        return Fail(ExitUsage, QStringLiteral("--scope belongs to the groups command."));
    if ((command == QLatin1String("groups") || command == QLatin1String("stats")) &&
        args.size() != 1)
        return Fail(ExitUsage, QStringLiteral("\"%1\" takes no further arguments.").arg(command));
    if (command == QLatin1String("systems") && args.size() != 2)
        return Fail(ExitUsage, QStringLiteral("\"systems\" takes one group name."));
    if (command == QLatin1String("info") && args.size() < 2)
        return Fail(ExitUsage, QStringLiteral("\"info\" needs a kind and a name."));
    if (command == QLatin1String("find") && args.size() != 2)
        return Fail(ExitUsage, QStringLiteral("\"find\" takes one text (quote it when it has "
                                              "blanks)."));
    if (command == QLatin1String("list") && args.size() != 2)
        return Fail(ExitUsage, QStringLiteral("\"list\" takes one kind: systems, ellipsoids, "
                                              "dtfs, projections or units."));
    if (command == QLatin1String("export") && args.size() != 3)
        return Fail(ExitUsage, QStringLiteral("\"export\" takes a group and a system."));
    if (parser.isSet(formatOption) && command != QLatin1String("export"))
        return Fail(ExitUsage, QStringLiteral("--format belongs to the export command."));

    // Every command only reads: a missing user database is not created.
    const ReadOnlySource source(parser.value(dataOption));
    if (!source.ok())
        return Fail(ExitFailed, source.error());
    const QString dataSource = source.dllType();
    if (command == QLatin1String("stats") || command == QLatin1String("find") ||
        command == QLatin1String("list") || command == QLatin1String("export")) {
        QString error;
        const std::unique_ptr<GeoStore> store = GeoStore::Open(dataSource, &error);
        if (!store)
            return Fail(ExitFailed, error);
        if (command == QLatin1String("find"))
            return Find(*store, args[1]);
        if (command == QLatin1String("list"))
            return List(*store, args[1]);
        if (command == QLatin1String("export"))
            return Export(*store, source, args[1], args[2], parser.value(formatOption));
        return Stats(*store, source);
    }
    auto& list = OrvGeoDatabaseBaseList::GetGeoDatabaseList();
    const std::unique_ptr<OrvGeoDatabaseBase> db(list.Create(dataSource));
    if (!db)
        return Fail(ExitFailed, list.LastError());
    if (command == QLatin1String("groups"))
        return ListGroups(*db, parser.value(scopeOption));
    if (command == QLatin1String("systems"))
        return ListSystems(*db, args[1]);
    return Info(*db, args);
}
