#pragma once

#include <QString>

class ImportSession;

// Reads proj.db and writes every table of the system database, in the order the rows refer
// to each other. False: the session has the error. epsgVersion gets the EPSG version proj.db
// states (empty when it states none).
bool RunImportSteps(ImportSession& session, QString& epsgVersion);
