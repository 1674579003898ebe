#pragma once

#include "store/Records.h"

class GeoStore;

// A coordinate system as the static-data object assembles it: the system and the datum
// transformation, projection and unit it is saved with.
struct SystemDraft {
    SystemRecord system; // name, group, ellipsoid names, geoid and post values, carried fields
    EllipsoidValues localValues{};
    DtfRecord dtf;               // name, method, values, option, trailing values, texts
    QString dtfMethodName;       // wins over dtf.methodIndex when it names a method
    ProjectionRecord projection; // name, method id, parameters
    QString prjMethodName;       // wins over projection.methodId when it names a method
    UnitRecord unit;             // name, metres per unit, suffix, description, category
    bool utmMode = false;
};

// Every write of the user database. Each operation is one transaction that takes the write
// lock at its start (BEGIN IMMEDIATE), so writers in other processes wait for each other
// (up to the busy timeout) instead of failing half-way. On failure the transaction is rolled
// back and error says why in plain words. A user database that cannot be written (see
// GeoStore::userReadOnlyReason) refuses every write with the missing permission, and a
// look-up that cannot be read stops the write: nothing is decided on a partial answer.
namespace SystemWriter {

// Validates the draft and writes group, unit, datum transformation, projection and system.
bool Save(GeoStore& store, const SystemDraft& draft, QString* error);
bool Remove(GeoStore& store, const QString& group, const QString& system, QString* error);
bool AddUnit(GeoStore& store, const QString& name, double metersPerUnit, const QString& suffix,
             int category, QString* error);
bool SetInUse(GeoStore& store, const QString& group, const QString& system,
              const QString& projectId, bool inUse, QString* error);
// A project uses the system; false with error set when that cannot be read.
bool IsInUse(const GeoStore& store, const QString& system, QString* error);
// The projects that use the system, by id; empty with error set when that cannot be read.
QStringList ProjectsUsing(const GeoStore& store, const QString& system, QString* error);

} // namespace SystemWriter
