#include "support/TempDataFolder.h"

#include "store/DataSource.h"

QString TempDataFolder::userDbPath() const {
    return DataSource::UserDbPathIn(m_dir.path());
}

QString TestSystemDbPath() {
    return QStringLiteral(ORV_TEST_SYSTEM_DB);
}
