#include "DialogTestSupport.h"

#include "api/OrvGeoFactories.h"

#include <gtest/gtest.h>

TestEditorOwner::TestEditorOwner()
    : m_database(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_data.dllType())),
      m_static(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(m_data.dllType())) {
    EXPECT_TRUE(m_database && m_static) << "the test databases did not open";
}

ScriptedUi::FailureHandler FailTest() {
    return [](const QString& message) { ADD_FAILURE() << message.toStdString(); };
}
